#include "hosts/device/sample/SampleScript.h"

namespace chatsum::device {

namespace {

// clang-format off

// Members: 1 Eleni, 2 Oksana, 3 Layla, 4 Noam, 5 Arjun, 6 Malee, 7 Xiaoming, 8 Yuki, 9 Minji, 10 Léa, 11 Jonas.
std::vector<SampleScene> languageTableScenes() {
  return {
      {"2021-11-20 12:00", {
          {0, 10, "Language table 🌍", kRenamed},
          {1, 10, "Bienvenue à toutes et à tous ! Ici, chacun écrit dans sa langue, même les fautes sont à l'honneur."},
          {3, 1, "Καλημέρα σε όλους! Χαίρομαι πολύ που είμαστε όλοι εδώ."},
          {2, 2, "Привіт! Дуже рада. Сьогодні в нас перший сніг ❄️"},
          {1, 3, "مرحبا جميعا! كيف حالكم اليوم؟"},
          {4, 4, "שלום לכולם! מה שלומכם? אצלנו 24 מעלות בחוץ"},
          {2, 5, "नमस्ते! यहाँ आज बहुत सुहावना मौसम है।"},
          {1, 6, "สวัสดีค่ะทุกคน ยินดีที่ได้รู้จักนะคะ"},
          {3, 7, "大家好！很高兴认识你们。我今天包了饺子，可惜不能用手机寄。"},
          {2, 8, "はじめまして、由紀です。よろしくお願いします！"},
          {1, 9, "안녕하세요! 저는 민지예요. 만나서 반가워요 😊"},
          {5, 11, "Grüß Gott aus Berlin — äh, guten Tag natürlich. Schöne Grüße, Jonas"},
          {2, 0, "Hello everyone! I can read exactly two of these without help, and one of them is mine"},
          {1, 10, "C'est déjà un bon début 😄"},
      }},
      {"2022-01-31 18:00", {
          {0, 7, "春节快乐！祝大家虎年大吉 🐯🧧"},
          {2, 9, "새해 복 많이 받으세요! 우리 집은 떡국을 먹어요 🍲"},
          {4, 8, "写真が見たいです！"},
          {3, 9, "여기 있어요", kPlain, {"sunset.png"}},
          {1, 6, "สวยมากเลยค่ะ 🙏"},
          {6, 0, "Is that the sea right behind your house?"},
          {2, 9, "네! 걸어서 3분 (3 minutes on foot)"},
      }},
      {"2022-06-18 09:15", {
          {0, 1, "Ερώτηση: πώς λέτε «γλυκό λεμόνι» στη γλώσσα σας; Ο Casey φτιάχνει ένα."},
          {3, 3, "حلوى الليمون 🍋"},
          {1, 2, "Лимонний десерт. Рецепт, будь ласка!"},
          {1, 4, "קינוח לימון. גם אני רוצה את המתכון (3 לימונים, 200 גרם סוכר?)"},
          {2, 5, "नींबू की मिठाई, और हाँ, रेसिपी भेजिए!"},
          {4, 7, "柠檬甜点。三个柠檬够吗？"},
          {1, 8, "レモンのデザート、ですね。", kBodyOnly},
          {1, 6, "ของหวานมะนาวค่ะ"},
          {3, 0, "It has now been translated more often than my birth certificate"},
          {2, 10, "« Le truc au citron », tout simplement. À Noël, j'en ai mangé huit parts, j'ose à peine l'écrire…"},
          {1, 11, "Acht?! Hut ab! Ich schaffe höchstens fünf Stück. Süß, säuerlich, großartig."},
      }},
      {"2023-03-26 00:58", {
          {0, 11, "Achtung, gleich ist es drei statt zwei Uhr"},
          {3, 1, "Πάλι χάσαμε μία ώρα ύπνου…"},
          {2, 10, "Moi, j'ai surtout perdu mes clés"},
          {430, 2, "Доброго ранку всім, хто прокинувся 🌅"},
          {2, 9, "여긴 벌써 오후예요 ㅋㅋㅋ"},
      }},
      {"2023-10-07 16:20", {
          {0, 8, "絵文字テスト：👩‍🚀👨‍👩‍👧‍👦🏴󠁧󠁢󠁳󠁣󠁴󠁿👍🏾❤️‍🔥"},
          {1, 10, "Ça marche ! Et les accents décomposés : e\u0301 a\u0300 o\u0302 n\u0303 u\u0308 ?"},
          {2, 11, "Sehe ich alle: é à ô ñ ü"},
          {1, 2, "А в мене: ї й є ґ — теж усе добре 🇺🇦🇬🇷🇯🇵🇰🇷🇮🇳🇹🇭🇫🇷🇩🇪"},
          {2, 3, "وأنا كتبت كلمة English داخل جملة عربية، هل تظهر بشكل صحيح؟"},
          {1, 4, "אצלי הכול נראה טוב, כולל Hello באמצע"},
          {1, 5, "क्षेत्र, ज्ञान, श्री — सब संयुक्त अक्षर ठीक हैं।"},
          {2, 6, "น้ำ ที่ นี้ ก็ ปกติดีค่ะ"},
          {3, 7, "𠮷野家的“𠮷”也能显示，太好了！"},
          {1, 0, "And z̷a̷l̷g̷o̷ for the brave. We have all passed"},
          {1, 1, "Μπράβο μας! 👏"},
      }},
  };
}

// clang-format on

}  // namespace

std::vector<SampleChat> sampleLanguages() {
  return {
      {"iMessage;+;chat602847193350918274",
       "chat602847193350918274",
       "iMessage",
       true,
       "Language table 🌍",
       {"eleni@example.com", "oksana@example.com", "layla@example.com", "noam@example.com", "arjun@example.com",
        "malee@example.com", "xiaoming@example.com", "yuki@example.com", "minji@example.com", "lea@example.com",
        "+493055501234"},
       "",
       languageTableScenes()},
  };
}

}  // namespace chatsum::device
