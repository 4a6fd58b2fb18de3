#include "hosts/device/sample/SampleScript.h"

namespace chatsum::device {

namespace {

// clang-format off

std::vector<SampleScene> granScenes() {
  return {
      {"2020-05-10 11:00", {
          {0, 1, "Dear Casey, this is your grandmother writing. I have a telephone now that can do this. Love, Gran"},
          {6, 0, "Gran!! Welcome to the future. How did you get hold of that?"},
          {31, 1, "From the shop. Love, Gran"},
          {2, 0, "You don't have to sign, I can see that it's you"},
          {18, 1, "All right. Love, Gran"},
      }},
      {"2020-12-25 09:20", {
          {0, 1, "MERRY CHRISTMAS. I HAVE FOUND THE LARGE LETTERS. LOVE, GRAN"},
          {5, 0, "MERRY CHRISTMAS GRAN! I'll be there at noon with the lemon thing"},
          {12, 1, "Your grandfather's recipe. He never stopped stirring either."},
      }},
      {"2022-01-01 12:15", {
          {0, 1, "Happy new year dear. Your friend Maya rang me at midnight. Such a nice voice."},
          {24, 0, "She did?! That's lovely. Happy new year, Gran"},
          {9, 1, "She says Portugal. Wear a hat."},
      }},
      {"2023-04-02 15:40", {
          {0, 1, "The blackbird is back in the gutter. Three eggs."},
          {14, 0, "Don't let the gutter man come then!"},
          {3, 1, "I have told him June."},
          {2, 0, "Well done 🐦"},
          {44, 1, "What is the small bird and how did you make it?"},
          {3, 0, "The smiling face on the keyboard, then look for animals"},
          {16, 1, "🐙 Love, Gran"},
      }},
      {"2024-01-01 00:30", {
          {0, 0, "Happy new year, Gran! I was told by the future to call you. May I, tomorrow at ten?"},
          {421, 1, "Ten is fine. Who is the future?"},
          {3, 0, "Maya"},
          {8, 1, "Of course it is."},
      }},
  };
}

std::vector<SampleScene> deliveryScenes() {
  return {
      {"2019-11-25 08:02", {
          {0, 1, "ParcelPoint: Your parcel 4471-20 is out for delivery today between 10:00 and 12:00. Reply STOP to end."},
          {170, 1, "ParcelPoint: Delivered at 10:51. Left with: neighbour, no. 14."},
      }},
      {"2020-04-02 07:58", {
          {0, 1, "ParcelPoint: Your parcel 5203-77 is out for delivery today between 13:00 and 15:00. Reply STOP to end."},
          {422, 1, "ParcelPoint: Sorry, we missed you. Next attempt: tomorrow. Change the day: https://example.com/p/520377"},
          {1440, 1, "ParcelPoint: Delivered at 14:20. Signed by: C."},
      }},
      {"2020-12-18 07:31", {
          {0, 1, "ParcelPoint: High season! Your parcel 6118-02 is one day late. We are sorry."},
          {1502, 1, "ParcelPoint: Delivered at 08:33. Left: porch."},
      }},
      {"2021-08-09 09:10", {
          {0, 1, "ParcelPoint: Your code for the locker at Mill Street is 083 115. It is valid for 48 hours."},
          {300, 1, "ParcelPoint: Locker emptied at 14:10. Thank you!"},
      }},
      {"2022-05-30 08:00", {
          {0, 1, "ParcelPoint: Your parcel 7745-19 (weight 11.20 kg, 2 pieces) is out for delivery today."},
          {0, 1, "ParcelPoint: Your parcel 7745-20 (weight 0.35 kg, 1 piece) is out for delivery today.", kSameMoment},
          {255, 1, "ParcelPoint: 7745-19 delivered at 12:15. Left with: you."},
          {0, 1, "ParcelPoint: 7745-20 delivered at 12:15. Left with: you.", kSameMoment},
      }},
      {"2023-02-14 16:45", {
          {0, 1, "ParcelPoint: A parcel from \"Northside Bicycles, Inc.\" is waiting for you. Fee due: 0.00. Code 291 640."},
          {9, 0, "STOP"},
          {0, 1, "ParcelPoint: You will get no more messages about this parcel. Text START to change your mind."},
          {2, 0, "START"},
          {0, 1, "ParcelPoint: Welcome back! Your code is 291 640."},
      }},
      {"2024-04-29 10:05", {
          {0, 1, "ParcelPoint: Delivered at 10:04. Left: roof of the shed (as you wished)."},
      }},
  };
}

std::vector<SampleScene> strangerScenes() {
  return {
      {"2022-07-11 19:03", {
          {0, 1, "Hi, is the canoe still for sale?"},
          {4, 0, "I think you have the wrong number, sorry. (Though I do have a canoe.)"},
          {1, 1, "Does it leak?"},
          {1, 0, "A lot"},
          {2, 1, "Then no thanks. Have a good evening!"},
          {1, 0, "You too 😄"},
      }},
  };
}

std::vector<SampleScene> siobhanScenes() {
  return {
      {"2021-06-01 13:12", {
          {0, 1, "Hello Casey, it's Siobhán from the archive. We've found the photographs of the old ferry you asked about."},
          {38, 0, "That's wonderful! May I come and see them?"},
          {6, 1, "Any weekday, 9 to 4. Please ask for box 17, \"Harbour, misc.\""},
          {2, 0, "Tuesday then. Thank you so much"},
      }},
      {"2021-06-08 15:30", {
          {0, 0, "What a treasure. There's my grandfather's boat in the third one!"},
          {4, 1, "I thought so. Here is the scan", kPlain, {"IMG_0233.jpeg"}},
          {3, 1, "It says \"Peggy O'Brien, 1961\" on the bow. No relation, sadly"},
          {1, 0, "Perhaps a small one? 🙂"},
          {9, 1, "Go raibh míle maith agat for the biscuits, by the way. The whole reading room smelt of lemon"},
      }},
      {"2023-11-14 10:20", {
          {0, 1, "The exhibition opens on 1 December at 6. You're on the list: 'Casey + 1'"},
          {14, 0, "We'll be there. My +1 is 91 years old and has stories"},
          {1, 1, "Then we'll need a chair and a microphone", kBodyOnly},
      }},
      {"2023-12-02 09:15", {
          {0, 0, "Gran hasn't stopped talking about it. Thank you for the chair, the microphone, and the applause"},
          {21, 1, "She was the best part of the evening. We recorded all of it, with her permission"},
      }},
  };
}

std::vector<SampleScene> dentalScenes() {
  return {
      {"2022-12-05 09:00", {
          {0, 1, "Harbour Dental Clinic: reminder of your appointment on Thu 8 Dec at 08:20. Please reply C to confirm."},
          {11, 0, "C"},
          {0, 1, "Thank you. See you on Thursday."},
      }},
      {"2023-06-12 09:00", {
          {0, 1, "Harbour Dental Clinic: it's time for your check-up! Call us or reply with a day, e.g. MON, TUE."},
          {300, 0, "TUE please, in the morning"},
          {15, 1, "Tuesday 20 June, 08:40. Free parking behind the house."},
      }},
      {"2024-06-11 09:00", {
          {0, 1, "Harbour Dental Clinic: your next check-up is due. We've moved: now 4 Quay Street, 2nd floor (lift)."},
      }},
  };
}

std::vector<SampleScene> annScenes() {
  return {
      {"2023-09-18 20:10", {
          {0, 1, "Hi! We sat next to each other on the ferry on Saturday, you left a book on the seat. \"Eleven Keys\"?"},
          {16, 0, "That's mine! Thank you so much for writing. How did you find me?"},
          {2, 1, "Your e-mail is on the bookmark, between pages 88 and 89"},
          {1, 0, "Clever me. Shall I come and fetch it?"},
          {4, 1, "I'm on the ferry again on Friday, the 17:40. Same seat?"},
          {1, 0, "Same seat!"},
          {5760, 1, "I've read it in the meantime, I hope you don't mind. The ending!!"},
          {2, 0, "I'm on page 88, don't say a word"},
      }},
  };
}

std::vector<SampleScene> joAnnScenes() {
  return {
      {"2023-10-30 08:44", {
          {0, 1, "Good morning, the choir moves to Wednesdays from next week, 7 pm, same hall. Scores are attached.",
           kPlain, {"Scores.pdf"}},
          {26, 0, "Thanks, Jo Ann. Second sopranos to the left as always?"},
          {3, 1, "As always. And NO humming of the accordion song"},
          {1, 0, "I can't promise that"},
      }},
  };
}

// clang-format on

}  // namespace

std::vector<SampleChat> sampleOthers() {
  return {
      {"SMS;-;+15550100108", "+15550100108", "SMS", false, "", {"+15550100108"}, "", granScenes()},
      {"SMS;-;55501", "55501", "SMS", false, "", {"55501"}, "", deliveryScenes()},
      {"SMS;-;+15550100163", "+15550100163", "SMS", false, "", {"+15550100163"}, "", strangerScenes()},
      {"iMessage;-;o'brien@example.com",
       "o'brien@example.com",
       "iMessage",
       false,
       "",
       {"o'brien@example.com"},
       "",
       siobhanScenes()},
      {"SMS;-;+15550100120", "+15550100120", "SMS", false, "", {"+15550100120"}, "", dentalScenes()},
      {"iMessage;-;ann@example.com", "ann@example.com", "iMessage", false, "", {"ann@example.com"}, "", annScenes()},
      {"iMessage;-;joann@example.com",
       "joann@example.com",
       "iMessage",
       false,
       "",
       {"joann@example.com"},
       "",
       joAnnScenes()},
  };
}

}  // namespace chatsum::device
