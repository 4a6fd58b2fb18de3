#include "platform/system/phone/PhoneRegions.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <iterator>

namespace chatsum::platform::system {
namespace {

// In the order of the names. A test holds it against libphonenumber's metadata.
constexpr PhoneRegion kRegions[] = {
    {"AC", 247, ""},  {"AD", 376, ""},  {"AE", 971, "0"}, {"AF", 93, "0"},  {"AG", 1, "1"},   {"AI", 1, "1"},
    {"AL", 355, "0"}, {"AM", 374, "0"}, {"AO", 244, ""},  {"AR", 54, "0"},  {"AS", 1, "1"},   {"AT", 43, "0"},
    {"AU", 61, "0"},  {"AW", 297, ""},  {"AX", 358, "0"}, {"AZ", 994, "0"}, {"BA", 387, "0"}, {"BB", 1, "1"},
    {"BD", 880, "0"}, {"BE", 32, "0"},  {"BF", 226, ""},  {"BG", 359, "0"}, {"BH", 973, ""},  {"BI", 257, ""},
    {"BJ", 229, ""},  {"BL", 590, "0"}, {"BM", 1, "1"},   {"BN", 673, ""},  {"BO", 591, "0"}, {"BQ", 599, ""},
    {"BR", 55, "0"},  {"BS", 1, "1"},   {"BT", 975, ""},  {"BW", 267, ""},  {"BY", 375, "8"}, {"BZ", 501, ""},
    {"CA", 1, "1"},   {"CC", 61, "0"},  {"CD", 243, "0"}, {"CF", 236, ""},  {"CG", 242, ""},  {"CH", 41, "0"},
    {"CI", 225, ""},  {"CK", 682, ""},  {"CL", 56, ""},   {"CM", 237, ""},  {"CN", 86, "0"},  {"CO", 57, "0"},
    {"CR", 506, ""},  {"CU", 53, "0"},  {"CV", 238, ""},  {"CW", 599, ""},  {"CX", 61, "0"},  {"CY", 357, ""},
    {"CZ", 420, ""},  {"DE", 49, "0"},  {"DJ", 253, ""},  {"DK", 45, ""},   {"DM", 1, "1"},   {"DO", 1, "1"},
    {"DZ", 213, "0"}, {"EC", 593, "0"}, {"EE", 372, ""},  {"EG", 20, "0"},  {"EH", 212, "0"}, {"ER", 291, "0"},
    {"ES", 34, ""},   {"ET", 251, "0"}, {"FI", 358, "0"}, {"FJ", 679, ""},  {"FK", 500, ""},  {"FM", 691, ""},
    {"FO", 298, ""},  {"FR", 33, "0"},  {"GA", 241, ""},  {"GB", 44, "0"},  {"GD", 1, "1"},   {"GE", 995, "0"},
    {"GF", 594, "0"}, {"GG", 44, "0"},  {"GH", 233, "0"}, {"GI", 350, ""},  {"GL", 299, ""},  {"GM", 220, ""},
    {"GN", 224, ""},  {"GP", 590, "0"}, {"GQ", 240, ""},  {"GR", 30, ""},   {"GT", 502, ""},  {"GU", 1, "1"},
    {"GW", 245, ""},  {"GY", 592, ""},  {"HK", 852, ""},  {"HN", 504, ""},  {"HR", 385, "0"}, {"HT", 509, ""},
    {"HU", 36, "06"}, {"ID", 62, "0"},  {"IE", 353, "0"}, {"IL", 972, "0"}, {"IM", 44, "0"},  {"IN", 91, "0"},
    {"IO", 246, ""},  {"IQ", 964, "0"}, {"IR", 98, "0"},  {"IS", 354, ""},  {"IT", 39, ""},   {"JE", 44, "0"},
    {"JM", 1, "1"},   {"JO", 962, "0"}, {"JP", 81, "0"},  {"KE", 254, "0"}, {"KG", 996, "0"}, {"KH", 855, "0"},
    {"KI", 686, "0"}, {"KM", 269, ""},  {"KN", 1, "1"},   {"KP", 850, "0"}, {"KR", 82, "0"},  {"KW", 965, ""},
    {"KY", 1, "1"},   {"KZ", 7, "8"},   {"LA", 856, "0"}, {"LB", 961, "0"}, {"LC", 1, "1"},   {"LI", 423, "0"},
    {"LK", 94, "0"},  {"LR", 231, "0"}, {"LS", 266, ""},  {"LT", 370, "8"}, {"LU", 352, ""},  {"LV", 371, ""},
    {"LY", 218, "0"}, {"MA", 212, "0"}, {"MC", 377, "0"}, {"MD", 373, "0"}, {"ME", 382, "0"}, {"MF", 590, "0"},
    {"MG", 261, "0"}, {"MH", 692, "1"}, {"MK", 389, "0"}, {"ML", 223, ""},  {"MM", 95, "0"},  {"MN", 976, "0"},
    {"MO", 853, ""},  {"MP", 1, "1"},   {"MQ", 596, "0"}, {"MR", 222, ""},  {"MS", 1, "1"},   {"MT", 356, ""},
    {"MU", 230, ""},  {"MV", 960, ""},  {"MW", 265, "0"}, {"MX", 52, "01"}, {"MY", 60, "0"},  {"MZ", 258, ""},
    {"NA", 264, "0"}, {"NC", 687, ""},  {"NE", 227, ""},  {"NF", 672, ""},  {"NG", 234, "0"}, {"NI", 505, ""},
    {"NL", 31, "0"},  {"NO", 47, ""},   {"NP", 977, "0"}, {"NR", 674, ""},  {"NU", 683, ""},  {"NZ", 64, "0"},
    {"OM", 968, ""},  {"PA", 507, ""},  {"PE", 51, "0"},  {"PF", 689, ""},  {"PG", 675, ""},  {"PH", 63, "0"},
    {"PK", 92, "0"},  {"PL", 48, ""},   {"PM", 508, "0"}, {"PR", 1, "1"},   {"PS", 970, "0"}, {"PT", 351, ""},
    {"PW", 680, ""},  {"PY", 595, "0"}, {"QA", 974, ""},  {"RE", 262, "0"}, {"RO", 40, "0"},  {"RS", 381, "0"},
    {"RU", 7, "8"},   {"RW", 250, "0"}, {"SA", 966, "0"}, {"SB", 677, ""},  {"SC", 248, ""},  {"SD", 249, "0"},
    {"SE", 46, "0"},  {"SG", 65, ""},   {"SH", 290, ""},  {"SI", 386, "0"}, {"SJ", 47, ""},   {"SK", 421, "0"},
    {"SL", 232, "0"}, {"SM", 378, ""},  {"SN", 221, ""},  {"SO", 252, "0"}, {"SR", 597, ""},  {"SS", 211, "0"},
    {"ST", 239, ""},  {"SV", 503, ""},  {"SX", 1, "1"},   {"SY", 963, "0"}, {"SZ", 268, ""},  {"TA", 290, ""},
    {"TC", 1, "1"},   {"TD", 235, ""},  {"TG", 228, ""},  {"TH", 66, "0"},  {"TJ", 992, ""},  {"TK", 690, ""},
    {"TL", 670, ""},  {"TM", 993, "8"}, {"TN", 216, ""},  {"TO", 676, ""},  {"TR", 90, "0"},  {"TT", 1, "1"},
    {"TV", 688, ""},  {"TW", 886, "0"}, {"TZ", 255, "0"}, {"UA", 380, "0"}, {"UG", 256, "0"}, {"US", 1, "1"},
    {"UY", 598, "0"}, {"UZ", 998, "8"}, {"VA", 39, ""},   {"VC", 1, "1"},   {"VE", 58, "0"},  {"VG", 1, "1"},
    {"VI", 1, "1"},   {"VN", 84, "0"},  {"VU", 678, ""},  {"WF", 681, ""},  {"WS", 685, ""},  {"XK", 383, "0"},
    {"YE", 967, "0"}, {"YT", 262, "0"}, {"ZA", 27, "0"},  {"ZM", 260, "0"}, {"ZW", 263, "0"}};

}  // namespace

const PhoneRegion* phoneRegionNamed(std::string_view name) {
  if (name.size() != 2) return nullptr;
  const auto upper = [](char c) { return static_cast<char>(std::toupper(static_cast<unsigned char>(c))); };
  const std::array<char, 2> letters = {upper(name[0]), upper(name[1])};
  const std::string_view wanted(letters.data(), letters.size());
  const auto* found =
      std::lower_bound(std::begin(kRegions), std::end(kRegions), wanted,
                       [](const PhoneRegion& region, std::string_view key) { return region.name < key; });
  return found != std::end(kRegions) && found->name == wanted ? found : nullptr;
}

const PhoneRegion* phoneRegionWithCallingCode(int callingCode) {
  const auto* found = std::find_if(std::begin(kRegions), std::end(kRegions),
                                   [&](const PhoneRegion& region) { return region.callingCode == callingCode; });
  return found != std::end(kRegions) ? found : nullptr;
}

std::string_view internationalPrefix(const PhoneRegion* region) {
  if (!region) return "00";
  if (region->callingCode == 1) return "011";
  if (region->callingCode == 61) return "0011";
  if (region->callingCode == 81) return "010";
  // Where the trunk prefix is 8, people dial 8, wait, and go on with 10.
  if (region->trunkPrefix == "8" && region->callingCode != 370) return "810";
  return "00";
}

int callingCodeLength(int firstDigit, int secondDigit) {
  // Which second digits make a code of two digits, by the first digit.
  constexpr std::string_view kTwoDigits[] = {"",         "",        "07", "0123469", "013456789",
                                             "12345678", "0123456", "",   "1246",    "0123458"};
  if (firstDigit == 1 || firstDigit == 7) return 1;
  if (firstDigit < 0 || firstDigit > 9) return 3;
  return kTwoDigits[firstDigit].find(static_cast<char>('0' + secondDigit)) != std::string_view::npos ? 2 : 3;
}

}  // namespace chatsum::platform::system
