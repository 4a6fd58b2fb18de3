#include "hosts/device/sample/SampleScript.h"

namespace chatsum::device {

namespace {

// clang-format off

std::vector<SampleScene> mayaScenes() {
  return {
      {"2019-12-30 16:05", {
          {0, 1, "Happy almost new year! Did you get home all right?"},
          {4, 0, "Just now. The train stood still outside Millbrook for an hour 🙄"},
          {1, 1, "Again?? You should get a medal"},
          {2, 0, "I got a cold sandwich"},
          {1, 1, "Close enough"},
          {12, 1, "Tomorrow at ours, eight o'clock. Bring nothing but yourself"},
          {3, 0, "I will bring the lemon thing anyway"},
          {0, 1, "I was hoping you would say that"},
      }},
      {"2020-01-01 00:02", {
          {0, 0, "HAPPY NEW YEAR from the other end of your own kitchen 🎉"},
          {0, 1, "Why are you writing to me, I can see you"},
          {0, 0, "For the archives"},
      }},
      {"2020-06-14 08:51", {
          {0, 1, "Are you awake? The market has strawberries"},
          {9, 0, "Now I am"},
          {1, 0, "How many is too many"},
          {1, 1, "Four boxes is too many. I bought four boxes."},
          {3, 1, "", kPlain, {"IMG_0001.jpeg"}},
          {2, 0, "Look at that sky! I'll cycle over, give me half an hour"},
          {0, 1, "Bring the big pot"},
          {41, 0, "I'm at the door, the bell is broken"},
          {1, 1, "It was never connected 😅"},
      }},
      {"2020-11-08 19:20", {
          {0, 1, "Quick question: what was the name of the film with the lighthouse and the very small dog?"},
          {7, 0, "\"The Keeper's Winter\""},
          {0, 1, "THANK YOU. We have been arguing for twenty minutes"},
          {1, 0, "Who won?"},
          {1, 1, "Me, obviously"},
          {2, 1, "Also: did you ever send me the recipe for the lemon thing?"},
          {5, 0, "Lemon thing:\n- 3 lemons\n- 200 g sugar\n- 4 eggs\n- 120 g butter\nMelt, stir, never stop stirring, pour, wait."},
          {1, 1, "\"Never stop stirring\" sounds like a family motto"},
          {0, 0, "It is. Sadly."},
      }},
      {"2021-03-14 09:40", {
          {0, 1, "Did you change your clocks?"},
          {21, 0, "No, I simply arrived an hour late everywhere. Very relaxing"},
          {2, 1, "Lunch at 1 then. Or at 2. Depending on who you ask"},
          {1, 0, "1 o'clock new time"},
      }},
      {"2021-07-30 20:14", {
          {0, 1, "The sea!!", kPlain, {"IMG_0233.jpeg"}},
          {1, 0, "No fair. I'm looking at a spreadsheet"},
          {2, 1, "Then look at this instead", kPlain, {"sunset.png"}},
          {3, 0, "Fine. I'm officially jealous."},
          {6, 1, "The landlady asked whether we are \"the people with the loud parrot\""},
          {1, 0, "You don't have a parrot"},
          {0, 1, "That's what I said! She did not believe me"},
          {0, 0, "Start practising your parrot voice"},
          {4, 1, "Polly wants a refund"},
          {55, 1, "Back on Sunday late. Could you water the tomatoes tomorrow, please?"},
          {3, 0, "Done this morning, and I ate two. They were ready, I promise"},
          {1, 1, "Thief ❤️", kBodyOnly},
      }},
      {"2021-12-31 23:52", {
          {0, 1, "Eight minutes!"},
          {1, 0, "Mine says seven"},
          {1, 1, "Yours has always been in a hurry"},
          {7, 0, "Happy new year, Maya!"},
          {0, 1, "Happy new year!! 🥂", kSameMoment},
          {1, 1, "Ha, at the very same second"},
          {2, 0, "Let's have a quiet one this time, yes?"},
          {1, 1, "Deal."},
      }},
      {"2022-01-02 10:31", {
          {0, 1, "So, about that quiet year. I've been offered the job in Porto."},
          {1, 0, "WHAT"},
          {0, 0, "Sit down. No, I mean: I'm sitting down. Tell me everything"},
          {3, 1, "They want me from March, two years to begin with. The flat is above a bakery, which I consider a trap"},
          {2, 0, "The best kind of trap"},
          {1, 0, "Are you going to do it?"},
          {6, 1, "I think so. I'm terrified and I've already learned the word for custard"},
          {1, 0, "Then you have everything you need"},
          {0, 1, "I'd need you to visit. Often. With the lemon thing"},
          {1, 0, "Obviously. Congratulations!!"},
          {0, 1, "Loved “Obviously. Congratulations!!”", kReaction},
      }},
      {"2022-02-26 15:02", {
          {0, 1, "Packing list so far: 1 suitcase, 14 boxes of books, 0 sense"},
          {2, 0, "Books first, sense later"},
          {4, 1, "I found your blue scarf, your bicycle pump, \"Birds of the North\", and a jar labelled \"do not open before 2030\""},
          {1, 0, "Don't open it"},
          {0, 1, "", kUnsent},
          {9, 1, "I opened it. It's buttons."},
          {1, 0, "Great. Now 2030 is ruined"},
      }},
      {"2022-03-27 07:48", {
          {0, 1, "First Sunday here. They changed the clocks on me AGAIN"},
          {35, 0, "They follow you around"},
          {2, 1, "The trap downstairs opens at six. I have gained a kilo and three friends"},
          {1, 0, "Pictures or it didn't happen", kReply},
          {5, 1, "Breakfast, the view, and Tiago's dog in that order", kPlain, {"IMG_0001.jpeg", "heart.png", "IMG_0233.jpeg"}},
          {3, 0, "The dog is a boat, Maya"},
          {0, 1, "He contains multitudes"},
      }},
      {"2022-10-02 18:11", {
          {0, 0, "Landing on the 14th at 11:25, leaving on the 19th. Does that still work?", kEdited, {},
           "Landing on the 14th at 10:25, leaving on the 19th. Does that still work?"},
          {4, 1, "Yes! I've told the bakery to prepare"},
          {1, 0, "What should I bring?"},
          {1, 1, "Tea. Proper tea. And the bird book"},
          {0, 0, "Tea, bird book, lemon thing"},
          {1, 1, "Customs will have questions about the lemon thing"},
          {1, 0, "I'll say it's a paperweight"},
          {20, 0, "Here is the booking, in case I get lost", kPlain, {"Booking.pdf"}},
          {2, 1, "Printed it and stuck it on the fridge like a proud parent"},
      }},
      {"2022-10-19 21:37", {
          {0, 0, "Home. The flat is cold and there's no custard anywhere"},
          {1, 1, "The dog is looking for you"},
          {0, 1, "He sat next to your chair and sighed. A full sigh!"},
          {2, 0, "Stop, I'm already sad"},
          {1, 1, "Come back in spring then"},
          {1, 0, "Yes. Thank you for everything 🫶"},
      }},
      {"2023-04-23 12:00", {
          {0, 1, "🎂 Happy birthday!! 🎂", kBalloons},
          {0, 1, "", kPlain, {"IMG_0412.jpeg"}},
          {15, 0, "You baked?? From memory??"},
          {2, 1, "I asked downstairs. I only lit the candle"},
          {1, 0, "Then tell them it's a very handsome cake, and give them a hug"},
          {2, 1, "They hugged back. My coat is now full of flour"},
          {30, 1, "And here's a song from all of us, please ignore the trumpet", kPlain, {"Audio Message.caf"}},
          {3, 0, "The trumpet is the best part"},
      }},
      {"2023-12-31 22:58", {
          {0, 1, "Midnight here in two minutes, I'm ahead of you for once"},
          {3, 1, "It's 2024 and it's raining. You have been warned", kBodyOnly},
          {1, 0, "Thank you, traveller from the future"},
          {1, 0, "Any advice?"},
          {1, 1, "Buy umbrellas. And call your grandmother"},
          {0, 0, "Did she tell you to say that?"},
          {1, 1, "She has my number, you know"},
      }},
      {"2024-05-18 17:22", {
          {0, 1, "The two years are over and they asked me to stay. I said yes"},
          {6, 0, "Of course you did. I'm so glad for you!"},
          {2, 1, "Not sad?"},
          {1, 0, "A little. But I've learned the word for custard too"},
          {1, 1, "Then you have everything you need 😌"},
          {4, 0, "Booking flights now. What's the bakery's record for the number of breakfasts in one week?"},
          {1, 1, "Eleven. I hold it"},
          {0, 0, "Challenge accepted"},
      }},
  };
}

// Daniel's older phone could only send plain text messages.
std::vector<SampleScene> danielSmsScenes() {
  return {
      {"2019-09-03 11:15", {
          {0, 1, "Hi, Daniel from the bike workshop here. Your front wheel is ready. 35 in total, we're open till 6."},
          {18, 0, "Great, thanks! I'll come by at about half past five"},
          {2, 1, "Good. Bring the lock key, the lock is still on it :-)"},
          {340, 0, "Sorry, 10 minutes late"},
          {1, 1, "No problem"},
      }},
      {"2020-02-12 08:30", {
          {0, 0, "Morning! The brakes are squealing like a piglet. Can I bring it in?"},
          {25, 1, "Thursday, any time. Does it happen only when wet?"},
          {3, 0, "Always. People turn around in the street"},
          {1, 1, "Free bell :-)"},
      }},
      {"2020-08-22 17:44", {
          {0, 1, "Some of us ride out to the reservoir tomorrow, 40 km, mostly flat. Coming along?"},
          {11, 0, "Define \"mostly\""},
          {2, 1, "One hill. Ok, two. There is cake after the second"},
          {1, 0, "I'm in"},
          {3, 1, "7.30 at the bridge. Bring water + a spare tube"},
      }},
      {"2020-12-31 18:03", {
          {0, 1, "Happy new year from all of us at the workshop! Closed until Jan 4."},
          {47, 0, "Happy new year, Daniel! See you on the road"},
      }},
      {"2022-06-05 13:09", {
          {0, 1, "No signal for the other thing out here. Puncture near the mill, starting without me is fine", kPlain},
          {4, 0, "We'll wait, there's a bench and Priya has biscuits"},
          {16, 1, "Rolling again. Save me one"},
      }},
  };
}

std::vector<SampleScene> danielScenes() {
  return {
      {"2021-02-06 10:00", {
          {0, 1, "New phone, who dis"},
          {5, 0, "It says \"Daniel Okafor\", so I assume a bear has stolen your phone"},
          {1, 1, "A bear with excellent taste in derailleurs"},
          {0, 1, "Now I can finally see your emoji 🎉🎉🎉"},
          {2, 0, "👩‍👩‍👧‍👦 🏳️‍🌈 🇵🇹 👍🏽 🧑🏿‍🚀"},
          {1, 1, "The family made it through in one piece. Impressive"},
      }},
      {"2021-05-20 19:32", {
          {0, 1, "You know spreadsheets, right? I'm adding up the workshop's receipts and it always shows the text instead of the number"},
          {3, 0, "What have you typed in the cell?"},
          {1, 1, "=SUM(A1:A9"},
          {1, 0, "There's a bracket missing at the end. Try this:"},
          {0, 0, "=SUM(A1:A9)"},
          {2, 1, "Magic. And for the average?"},
          {1, 0, "=AVERAGE(A1:A9)"},
          {0, 0, "And if you want the two together: =SUM(A1:A9)&\" / \"&AVERAGE(A1:A9)", kBodyOnly},
          {4, 1, "You're hired. Pay is in inner tubes"},
          {1, 0, "+1 for inner tubes"},
          {0, 1, "-3 on the account for last week's coffee, though"},
          {1, 0, "@work they would call that an incentive"},
      }},
      {"2021-09-17 07:05", {
          {0, 1, "Fog. Ride anyway?"},
          {2, 0, "Give it an hour"},
          {58, 1, "Still fog."},
          {1, 0, "Breakfast anyway?"},
          {0, 1, "Breakfast anyway."},
      }},
      {"2021-12-24 14:50", {
          {0, 0, "Merry Christmas to you and the twins! Did the little bikes arrive?"},
          {22, 1, "They did! Hidden in the workshop under a sheet with a sign saying \"NOT BIKES\""},
          {1, 0, "Subtle"},
          {1, 1, "They're four, it works"},
      }},
      {"2022-06-05 12:10", {
          {0, 1, "Leaving now, at the mill in 45 minutes"},
          {1, 0, "Same. Weather looks perfect"},
      }},
      {"2022-06-05 15:40", {
          {0, 1, "There's signal again. What a day. Here is the track we rode: 52 km, 610 m up, average 21.4"},
          {3, 0, "\"Mostly flat\", he said, once upon a time"},
          {1, 1, "And the film of your heroic sprint for the town sign", kPlain, {"IMG_0873.mov"}},
          {2, 0, "Why am I a boat"},
          {1, 1, "You were flying"},
      }},
      {"2022-11-29 20:26", {
          {0, 1, "Can you recommend a dentist? Asking for a friend who bit on an olive stone"},
          {4, 0, "https://example.com/harbour-dental", kLink, {}, "Harbour Dental Clinic: right by the ferry"},
          {1, 1, "My friend says thank you, in a slightly muffled way"},
          {0, 0, "Poor friend 🦷"},
      }},
      {"2023-03-11 16:18", {
          {0, 0, "The shop sign looks fantastic!"},
          {2, 1, "Priya painted it! She wouldn't take any money, so she now owns a bicycle"},
          {1, 0, "Good deal for both"},
          {1, 1, "Receipt for the paint, for your tax files", kPlain, {"receipt.bmp"}},
          {6, 0, "Got it. I'll book it under \"advertising, beautiful\""},
      }},
      {"2023-08-19 06:45", {
          {0, 1, "Up?"},
          {1, 0, "Unfortunately"},
          {0, 1, "Reservoir, one last time before the road works?"},
          {2, 0, "Give me twenty minutes and a very large coffee"},
          {1, 1, "Coffee's in the bottle"},
          {200, 0, "My legs have resigned in writing"},
          {1, 1, "HR will be in touch"},
      }},
      {"2024-03-10 18:00", {
          {0, 1, "We're turning the workshop into a co-op! All five of us own a fifth from April. Spread the word"},
          {3, 0, "That's wonderful news, Daniel. Congratulations to the whole crew"},
          {1, 0, "Is there a party?"},
          {1, 1, "Naturally. 6 April, from 4 pm, bring a chair"},
          {2, 0, "One chair, noted"},
          {1, 1, "Invitation by e-mail, because Nora made one with a border"},
          {2, 0, "This one did not go out, did it?", kNotSent},
          {1, 0, "Second try: I'll bring two chairs and the lemon thing"},
          {0, 1, "Liked “Second try: I'll bring two chairs and the lemon thing”", kReaction},
      }},
  };
}

std::vector<SampleScene> danielMailScenes() {
  return {
      {"2024-03-10 18:31", {
          {0, 1, "Invitation as promised. The border is Nora's, the spelling mistakes are mine.", kPlain, {"Invitation.pdf"}},
          {12, 0, "The border is magnificent"},
      }},
      {"2024-04-07 11:48", {
          {0, 1, "Thank you all for coming, for the 43 chairs, and for eating everything. — D."},
          {35, 0, "Thank YOU. I'm still humming the accordion song"},
          {2, 1, "Everybody is. There's no cure"},
      }},
  };
}

// clang-format on

}  // namespace

std::vector<SampleChat> sampleFriends() {
  return {
      {"iMessage;-;+15550100142", "+15550100142", "iMessage", false, "", {"+15550100142"}, "", mayaScenes()},
      {"SMS;-;+15550100175", "+15550100175", "SMS", false, "", {"+15550100175"}, "", danielSmsScenes()},
      {"iMessage;-;+15550100175", "+15550100175", "iMessage", false, "", {"+15550100175"}, "", danielScenes()},
      {"iMessage;-;daniel.okafor@example.com",
       "daniel.okafor@example.com",
       "iMessage",
       false,
       "",
       {"daniel.okafor@example.com"},
       "",
       danielMailScenes()},
  };
}

}  // namespace chatsum::device
