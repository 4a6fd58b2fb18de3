#include "hosts/device/sample/SeededText.h"

#include <cstddef>
#include <string_view>

namespace chatsum::device {

namespace {

constexpr std::string_view kCommonWords[] = {
    "the",     "you",     "to",       "and",     "it",      "is",      "in",      "that",   "we",       "for",
    "of",      "on",      "are",      "at",      "so",      "this",    "have",    "but",    "be",       "was",
    "just",    "not",     "what",     "me",      "my",      "do",      "can",     "if",     "with",     "your",
    "will",    "all",     "now",      "no",      "yes",     "good",    "see",     "when",   "out",      "up",
    "get",     "there",   "about",    "home",    "go",      "time",    "going",   "think",  "like",     "one",
    "know",    "how",     "then",     "back",    "here",    "from",    "was",     "today",  "tomorrow", "tonight",
    "thanks",  "sorry",   "really",   "still",   "love",    "day",     "work",    "later",  "maybe",    "please",
    "great",   "okay",    "been",     "some",    "more",    "too",     "well",    "want",   "let",      "only",
    "need",    "her",     "him",      "they",    "she",     "he",      "them",    "us",     "our",      "down",
    "over",    "again",   "morning",  "evening", "weekend", "dinner",  "lunch",   "coffee", "train",    "bus",
    "car",     "key",     "door",     "phone",   "picture", "meeting", "minutes", "hour",   "half",     "two",
    "three",   "first",   "last",     "next",    "week",    "year",    "before",  "after",  "because",  "something",
    "nothing", "someone", "everyone", "always",  "never",   "often",   "already", "almost", "quite",    "very",
    "much",    "little",  "big",      "small",   "new",     "old",     "right",   "left",   "wrong",    "sure",
    "fine",    "happy",   "tired",    "late",    "early",   "long",    "short",   "warm",   "cold",     "rain",
    "sun",     "water",   "bread",    "milk",    "shop",    "market",  "school",  "house",  "garden",   "kitchen",
    "table",   "book",    "film",     "music",   "song",    "game",    "ticket",  "plan",   "call",     "write",
    "read",    "send",    "bring",    "take",    "make",    "find",    "look",    "wait",   "stay",     "leave",
    "come",    "run",     "walk",     "drive",   "sleep",   "eat",     "drink",   "buy",    "pay",      "open",
    "close",   "start",   "stop",     "I'm",     "don't",   "can't",   "it's",    "that's", "we'll",    "I'll",
    "haven't", "let's",   "o'clock",  "10:30",   "8pm",     "42",      "100"};

constexpr std::string_view kAccentedWords[] = {"café", "déjà", "été",    "über",  "schön", "naïve", "señor", "mañana",
                                               "ça",   "où",   "Straße", "Größe", "år",    "smør",  "łódź",  "čaj"};

constexpr std::string_view kSyllables[] = {"ba",  "cor", "den",  "fel", "gri", "han",  "jo",  "kel", "lum", "mar",
                                           "nor", "os",  "pra",  "qui", "ros", "sten", "tul", "ver", "wil", "yan",
                                           "zo",  "bel", "cham", "dor", "ell", "fri",  "gar", "hol", "ing", "kor",
                                           "lan", "mel", "net",  "or",  "pel", "ran",  "sal", "tor", "und", "vin"};

// Pieces of other scripts; one message keeps to one row.
constexpr std::string_view kScripts[][8] = {
    {"καλημέρα", "τι", "κάνεις", "σήμερα", "αύριο", "στο", "σπίτι", "ευχαριστώ"},
    {"привіт", "як", "справи", "сьогодні", "завтра", "вдома", "дякую", "добре"},
    {"مرحبا", "كيف", "الحال", "اليوم", "غدا", "في", "البيت", "شكرا"},
    {"שלום", "מה", "שלומך", "היום", "מחר", "בבית", "תודה", "טוב"},
    {"नमस्ते", "कैसे", "हैं", "आज", "कल", "घर", "पर", "धन्यवाद"},
    {"สวัสดี", "วันนี้", "พรุ่งนี้", "ที่", "บ้าน", "ขอบคุณ", "ดี", "มาก"},
    {"你好", "今天", "明天", "在家", "谢谢", "很好", "一起", "吃饭"},
    {"こんにちは", "今日", "明日", "家で", "ありがとう", "元気", "一緒に", "カレー"},
    {"안녕하세요", "오늘", "내일", "집에서", "고마워요", "좋아요", "같이", "커피"}};

constexpr std::string_view kEmoji[] = {
    "😀", "😂", "❤️", "👍", "🎉", "🙏", "👍🏽", "👩‍👩‍👧‍👦", "🏳️‍🌈", "🇵🇹", "🥲", "🔥"};

constexpr std::string_view kFirstNames[] = {"Nora",  "Emil",  "Ida",   "Otto",  "Lena", "Hugo",  "Mina", "Aron",
                                            "Zoë",   "Björn", "Inès",  "Pavel", "Aiko", "Karim", "Rosa", "Tariq",
                                            "Freya", "Ivo",   "Salma", "Jonah", "Wren", "Dario", "Ada",  "Milo"};

template <std::size_t size>
std::string_view pick(SeededRandom& random, const std::string_view (&words)[size]) {
  return words[random.below(size)];
}

void appendRareWord(SeededRandom& random, std::string& text) {
  const std::uint64_t syllables = 2 + random.below(2);
  for (std::uint64_t count = 0; count < syllables; ++count) text += pick(random, kSyllables);
}

void appendWord(SeededRandom& random, std::string& text) {
  const std::uint64_t kind = random.below(100);
  if (kind < 90) {
    text += pick(random, kCommonWords);
  } else if (kind < 99) {
    appendRareWord(random, text);
  } else {
    text += pick(random, kAccentedWords);
  }
}

// Most messages are short, some run on.
std::uint64_t wordCount(SeededRandom& random) {
  std::uint64_t words = 1 + random.below(9) + random.below(9);
  if (random.below(10) == 0) words += random.below(50);
  return words;
}

char capital(char letter) { return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter; }

}  // namespace

void makeMessageText(SeededRandom& random, std::string& text) {
  text.clear();
  const std::uint64_t words = wordCount(random);
  if (random.below(25) == 0) {
    const auto& script = kScripts[random.below(std::size(kScripts))];
    for (std::uint64_t word = 0; word < words / 2 + 1; ++word) {
      if (word > 0) text += ' ';
      text += pick(random, script);
    }
  } else {
    for (std::uint64_t word = 0; word < words; ++word) {
      if (word > 0) {
        const std::uint64_t gap = random.below(100);
        text += gap < 5 ? ", " : gap == 5 ? ". " : gap == 6 && words > 12 ? "\n" : " ";
      }
      appendWord(random, text);
    }
    if (random.below(2) == 0) text[0] = capital(text[0]);
    constexpr std::string_view kEnds[] = {"", "", "", ".", ".", "?", "!", "…"};
    text += pick(random, kEnds);
  }
  const std::uint64_t extra = random.below(200);
  if (extra < 14) {
    text += ' ';
    text += pick(random, kEmoji);
  } else if (extra == 14) {
    text = "\"" + text + "\"";
  } else if (extra == 15) {
    text = "=" + text;
  }
}

SeededName makeName(SeededRandom& random) {
  SeededName name;
  name.first = pick(random, kFirstNames);
  appendRareWord(random, name.last);
  name.last[0] = capital(name.last[0]);
  return name;
}

}  // namespace chatsum::device
