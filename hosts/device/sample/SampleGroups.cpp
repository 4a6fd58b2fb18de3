#include "hosts/device/sample/SampleScript.h"

namespace chatsum::device {

namespace {

// clang-format off

// Members: 1 Maya, 2 Daniel, 3 Priya, 4 Tomasz (leaves), 5 a number that nobody has saved.
std::vector<SampleScene> hikerScenes() {
  return {
      {"2021-04-17 09:12", {
          {0, 3, "Sunday Hikers", kRenamed},
          {0, 3, "Welcome, everybody! First walk tomorrow: Alder Ridge, 11 km, moderate."},
          {2, 1, "Moderate for you or moderate for me?"},
          {1, 3, "Moderate for a goat with a backpack"},
          {1, 2, "I'm a goat. I'm in"},
          {3, 4, "In. I can take three people in the car"},
          {1, 0, "Me please! And I'll bring sandwiches"},
          {2, 1, "Shotgun"},
          {0, 4, "Shotgun is taken by the dog, sorry"},
          {1, 1, "Fair."},
      }},
      {"2021-04-18 16:55", {
          {0, 2, "I can't feel my knees"},
          {1, 3, "That's how you know it's working"},
          {2, 4, "Picture of the day", kPlain, {"IMG_0001.jpeg"}},
          {1, 0, "What a view. Same again in two weeks?"},
          {0, 1, "Yes!", kSameMoment},
          {0, 3, "Yes!!", kSameMoment},
          {4, 2, "Ask my knees"},
      }},
      {"2021-10-09 20:31", {
          {0, 3, "Tomorrow: Fern Valley. It'll be wet, so proper boots, no excuses, Daniel"},
          {2, 2, "They were NOT slippers"},
          {1, 1, "They had bunnies on them"},
          {1, 4, "😂😂😂"},
          {1, 0, "Meeting at 8:15 or 8:30?"},
          {2, 3, "8:15 for those who are always late, 8:30 for all others"},
          {1, 0, "So I come at 8:15"},
          {0, 3, "You come at 8:15"},
          {12, 5, "Hi all, Priya gave me this number. I'm her colleague from the school, may I join tomorrow?"},
          {1, 3, "Yes! Everybody, this is the friend who knows all the mushrooms"},
          {1, 1, "Welcome! Which ones can we eat?"},
          {2, 5, "All of them once"},
          {1, 2, "I like this person"},
      }},
      {"2021-10-10 17:20", {
          {0, 5, "Thank you for today. Here are the ones we found: chanterelle, amethyst deceiver, and (please wash your hands) the sickener"},
          {3, 0, "The names alone are worth the walk"},
          {1, 4, "I have washed my hands nine times"},
      }},
      {"2021-12-31 17:30", {
          {0, 3, "New Year's walk tomorrow at noon, for everyone who can stand up by then"},
          {6, 2, "Define \"stand up\""},
          {1, 4, "I'm away, but have a good slide into 2022, everybody!"},
          {3, 0, "Noon is ambitious, I'll be there"},
          {1, 1, "With the lemon thing?"},
          {0, 0, "With the lemon thing"},
      }},
      {"2022-03-13 09:58", {
          {0, 3, "Has everybody noticed that it's an hour later than you think?"},
          {1, 1, "It's always later than I think"},
          {14, 4, "My news: I'm moving to the coast in May, so this is my last walk with you. Thank you for all the Sundays"},
          {1, 3, "Oh no! And also: oh how nice for you!"},
          {1, 2, "The dog stays with us, I assume"},
          {1, 4, "The dog says he'll think about it"},
          {2, 0, "We'll miss you both, Tomasz. Send sea pictures"},
          {3, 5, "Safe travels. There are excellent mushrooms in the dunes in October"},
      }},
      {"2022-05-02 08:00", {
          {0, 4, "", kMemberLeft},
          {25, 1, "And off he goes 🌊"},
          {2, 2, "Who'll drive now?"},
          {1, 3, "The bus, Daniel. The 47, as it has been since 1974"},
      }},
      {"2022-09-24 18:45", {
          {0, 3, "Poll for tomorrow: a) lake, b) ridge, c) cake without walking", kCard, {}, "Polls"},
          {1, 2, "c"},
          {0, 1, "c (from Porto, in spirit)"},
          {1, 5, "a"},
          {1, 0, "a, then c"},
          {2, 3, "\"a, then c\" wins. As always."},
      }},
      {"2023-07-15 21:04", {
          {0, 3, "Everything you need for the hut weekend is in here. Read it. READ IT, DANIEL", kPlain, {"Hut weekend.pdf"}},
          {8, 2, "I've read it. Page 1 of 1. I'm very proud"},
          {1, 0, "What does \"no open fire, no accordion\" refer to?"},
          {0, 2, "I'd rather not say"},
          {2, 5, "I'd rather say, but tomorrow, and in person"},
          {1, 1, "I miss you all terribly"},
      }},
      {"2024-06-02 19:10", {
          {0, 3, "150th walk today. Thank you, dear goats"},
          {1, 2, "My knees would like to make a speech"},
          {0, 5, "Please no"},
          {2, 0, "To the next 150 🥾"},
          {4, 1, "And to the one in August when I'm over!! Save me a ridge"},
          {1, 3, "", kNoContent},
      }},
  };
}

// Members: 1 Priya, 2 Jonas.
std::vector<SampleScene> unnamedScenes() {
  return {
      {"2022-08-01 17:10", {
          {0, 1, "Jonas, meet Casey. Casey, meet Jonas. You both have a canoe and nobody to sit in the other end"},
          {4, 2, "Hello! Mine is green and leaks a little"},
          {1, 0, "Hi Jonas! Mine is red and leaks a lot"},
          {0, 1, "A match made in heaven"},
          {3, 2, "Wie wäre es am Samstag? Sorry, wrong language: how about Saturday?"},
          {1, 0, "Saturday's good. Noon at the boathouse?"},
          {1, 2, "Perfect. I'll bring tape. Viel Klebeband."},
      }},
      {"2022-08-06 18:40", {
          {0, 2, "We are alive, Priya"},
          {1, 1, "Are you dry?"},
          {1, 0, "That was not part of the agreement"},
          {2, 2, "Größtenteils trocken. Die Füße nicht."},
          {1, 1, "He writes German when he's happy"},
          {1, 2, "It's true 😊"},
      }},
      {"2023-06-10 09:00", {
          {0, 0, "Canoe season opens today. Tape is in stock"},
          {6, 2, "I have something better: a new canoe!"},
          {1, 1, "Does it leak?"},
          {1, 2, "Not yet"},
          {2, 0, "We'll see about that"},
          {3, 2, "Jonas' new number for the summer, in case the phone gets wet", kPlain, {"Jonas.vcf"}},
      }},
  };
}

// Members: 1 Tom, 2 Jerry.
std::vector<SampleScene> tripScenes() {
  return {
      {"2023-05-01 19:00", {
          {0, 1, "Tom/Jerry's trip", kRenamed},
          {0, 1, "Right. Three people, one van, ten days. What could go wrong?"},
          {1, 2, "Tom's singing"},
          {0, 1, "Apart from my singing"},
          {2, 0, "Jerry's map reading"},
          {0, 2, "Hey! I know exactly where we were. Afterwards"},
          {4, 1, "Costs so far: van 640, ferry 118.50, tolls ~30. So 788.50 / 3 = 262.83 each"},
          {1, 2, "1) Who pays the missing cent?\n2) Do we have a kettle?\n3) Can the dog come?"},
          {1, 1, "1) You. 2) Yes. 3) Ask the dog"},
          {2, 0, "I'll take the cent. Receipts go in the folder \"trip/2023\", please"},
      }},
      {"2023-06-24 05:30", {
          {0, 1, "Outside your house"},
          {1, 0, "It's half past five"},
          {0, 1, "Ferry's at eight!"},
          {1, 0, "Two minutes. Is Jerry awake?"},
          {1, 1, "Define awake"},
          {3, 2, "i am i n the van"},
      }},
      {"2023-06-25 20:48", {
          {0, 2, "", kPlain, {"blink.gif"}},
          {1, 1, "Why do you send this while sitting next to me"},
          {0, 2, "Casey's in the shower, it's for the archive"},
          {9, 0, "Seen it, loved it, never again"},
      }},
      {"2023-06-29 13:15", {
          {0, 1, "Gentlemen. Where are you? I'm at the harbour with three ice creams and not enough hands"},
          {1, 2, "We're at the harbour"},
          {0, 1, "Which harbour"},
          {1, 2, "…"},
          {1, 0, "He read the map again"},
          {2, 1, "Two ice creams now"},
          {4, 1, "One"},
          {1, 0, "Running!"},
      }},
      {"2023-07-04 22:12", {
          {0, 0, "Home. 2,114 km, no accident, 1 parking ticket, 46 songs"},
          {2, 2, "47, you slept through one"},
          {1, 1, "Same again next year? Yes/no/maybe"},
          {1, 0, "Yes/yes/yes"},
          {0, 2, "Laughed at “Yes/yes/yes”", kReaction},
      }},
  };
}

// Members: 1 Maya, 2 Hannah.
std::vector<SampleScene> bookClubScenes() {
  return {
      {"2022-11-06 15:00", {
          {0, 2, "New group since the old one kept swallowing pictures. November book: \"The Salt Road\""},
          {5, 0, "Started it on the train. Nobody is nice to anybody so far"},
          {2, 1, "Page 60: still nobody"},
          {1, 2, "Wait for the grandmother"},
          {4000, 0, "THE GRANDMOTHER!!"},
          {12, 1, "I know!!!"},
          {3, 2, "Told you."},
      }},
      {"2023-02-12 18:20", {
          {0, 2, "February: short stories, everybody picks one and reads two pages aloud. Video call at 7?"},
          {4, 1, "8 for you is 8 for me now, isn't it? I've lost track"},
          {1, 0, "7 here is 8 there. Or 9. I'll call you"},
          {2, 2, "I've got cake and you two can watch me eat it"},
          {1, 1, "Cruel"},
      }},
      {"2023-09-03 10:10", {
          {0, 1, "Finished \"A Field Guide to Getting Lost Indoors\" 📚 Five stars, minus one for the ending"},
          {8, 2, "The ending is the best part???"},
          {1, 1, "We'll discuss this on Thursday. Bring evidence"},
          {1, 0, "I'll bring popcorn"},
          {3, 2, "The list for autumn", kPlain, {"IMG_1190.HEIC"}},
          {9, 0, "The picture won't load here, can you type it?"},
          {4, 2, "1. \"North of Here\"\n2. \"Eleven Keys\"\n3. Something funny, please, anything"},
      }},
  };
}

// The same name, but the older group with one more reader: text messages only. Members: 1 Maya, 2 Hannah, 3 Tomasz.
std::vector<SampleScene> oldBookClubScenes() {
  return {
      {"2020-10-04 14:00", {
          {0, 2, "Hello book people! First meeting Thursday 7pm at my place. Book: \"The Keeper's Winter\" (yes, there's a film)"},
          {9, 1, "Yay! I'll bring wine"},
          {3, 0, "I'll bring opinions"},
          {1, 2, "Cheese would be better"},
          {1, 0, "Cheese and opinions"},
          {16, 3, "I've only seen the film. Does that count?"},
          {1, 2, "No. But come anyway"},
      }},
      {"2021-01-10 16:30", {
          {0, 2, "January: your turn to choose"},
          {22, 0, "\"Birds of the North\". Before you complain: it's very exciting, there's a heron"},
          {1, 1, "You had me at heron"},
          {2, 2, "The heron had better deliver"},
      }},
      {"2022-11-05 20:00", {
          {0, 2, "I'm opening a new group, pictures keep getting lost in this one. See you over there!"},
          {2, 1, "Goodbye, old group, you were a good group"},
      }},
  };
}

// clang-format on

}  // namespace

std::vector<SampleChat> sampleGroups() {
  return {
      {"iMessage;+;chat481920375610284731",
       "chat481920375610284731",
       "iMessage",
       true,
       "Sunday Hikers",
       {"+15550100142", "+15550100175", "+15550100118", "+15550100131", "+15550100199"},
       "+15550100131",
       hikerScenes()},
      {"iMessage;+;chat730184562917405826",
       "chat730184562917405826",
       "iMessage",
       true,
       "",
       {"+15550100118", "+493055501234"},
       "",
       unnamedScenes()},
      {"iMessage;+;chat915537204186639042",
       "chat915537204186639042",
       "iMessage",
       true,
       "Tom/Jerry's trip",
       {"+15550100126", "+15550100127"},
       "",
       tripScenes()},
      {"iMessage;+;chat264409817735026198",
       "chat264409817735026198",
       "iMessage",
       true,
       "Book club",
       {"+15550100142", "+15550100151"},
       "",
       bookClubScenes()},
      {"SMS;+;chat108276495531702846",
       "chat108276495531702846",
       "SMS",
       true,
       "Book club",
       {"+15550100142", "+15550100151", "+15550100131"},
       "",
       oldBookClubScenes()},
  };
}

}  // namespace chatsum::device
