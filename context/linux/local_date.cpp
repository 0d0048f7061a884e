// Dates through ICU's C interface, loaded when the first date is asked for. Linking it would cost every start
// 0.4 ms and 1.7 MB, half of what the rest of the program costs, for a sentence that few checks print.
#include <unicode/udat.h>
#include <utf8cpp/utf8.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <ctime>
#include <iterator>
#include <string_view>

#include "context/linux/loaded_library.h"
#include "system/environment.h"
#include "system/port.h"

// ICU's headers rename every function to carry the version; the loader needs that name as a text.
#define TARNWICK_QUOTED(name) #name
#define TARNWICK_ICU_NAME(name) TARNWICK_QUOTED(name)

namespace tarnwick {
namespace {

// The functions that a date takes; all null where ICU is missing.
struct Icu {
  LoadedLibrary library{"libicui18n.so." U_ICU_VERSION_SHORT};
  decltype(udat_open)* open = library.function<decltype(udat_open)>(TARNWICK_ICU_NAME(udat_open));
  decltype(udat_format)* format = library.function<decltype(udat_format)>(TARNWICK_ICU_NAME(udat_format));
  decltype(udat_close)* close = library.function<decltype(udat_close)>(TARNWICK_ICU_NAME(udat_close));
  decltype(udat_countAvailable)* count =
      library.function<decltype(udat_countAvailable)>(TARNWICK_ICU_NAME(udat_countAvailable));
  decltype(udat_getAvailable)* available =
      library.function<decltype(udat_getAvailable)>(TARNWICK_ICU_NAME(udat_getAvailable));

  bool isComplete() const {
    return open != nullptr && format != nullptr && close != nullptr && count != nullptr &&
           available != nullptr;
  }
};

bool isMadeOf(std::string_view text, char first, char last) {
  return std::all_of(text.begin(), text.end(), [&](char c) { return c >= first && c <= last; });
}

// A language in two or three small letters, then perhaps a country in two capitals or three digits.
bool isCanonical(std::string_view locale) {
  const std::string_view language = locale.substr(0, locale.find('_'));
  if (language.size() < 2 || language.size() > 3 || !isMadeOf(language, 'a', 'z')) return false;
  if (language.size() == locale.size()) return true;
  const std::string_view country = locale.substr(language.size() + 1);
  return (country.size() == 2 && isMadeOf(country, 'A', 'Z')) ||
         (country.size() == 3 && isMadeOf(country, '0', '9'));
}

bool isKnownLanguage(const Icu& icu, std::string_view language) {
  for (std::int32_t i = 0; i < icu.count(); ++i) {
    if (icu.available(i) == language) return true;
  }
  return false;
}

// The user's choice for dates as ICU writes it: de_DE for "de_DE.UTF-8". Whatever is no language that ICU
// knows is not put before it: a variable may say anything. The bare "C" of a machine without any choice is
// none either; its dates are American English like the rest of the texts.
std::string icuLocale(const Icu& icu) {
  const std::string chosen = dateLocale();
  const std::string locale = chosen.substr(0, chosen.find_first_of(".@"));
  const bool known = isCanonical(locale) && isKnownLanguage(icu, locale.substr(0, locale.find('_')));
  return known ? locale : "en_US";
}

std::string dateThroughIcu(const Icu& icu, double milliseconds) {
  UErrorCode status = U_ZERO_ERROR;
  UDateFormat* format =
      icu.open(UDAT_SHORT, UDAT_MEDIUM, icuLocale(icu).c_str(), nullptr, -1, nullptr, -1, &status);
  if (U_FAILURE(status) != 0) return {};
  std::array<UChar, 200> text{};
  const std::int32_t length =
      icu.format(format, milliseconds, text.data(), static_cast<std::int32_t>(text.size()), nullptr, &status);
  icu.close(format);
  if (U_FAILURE(status) != 0 || length < 0 || static_cast<std::size_t>(length) > text.size()) return {};
  std::string utf8Text;
  utf8::utf16to8(text.begin(), text.begin() + length, std::back_inserter(utf8Text));
  return utf8Text;
}

// Without ICU: the numbers alone, which every language reads.
std::string plainDate(double seconds) {
  const auto moment = static_cast<std::time_t>(seconds);
  std::tm parts{};
  std::array<char, 64> text{};
  if (::localtime_r(&moment, &parts) == nullptr) return "?";
  return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M", &parts)};
}

}  // namespace

std::string localMediumDate(Timestamp moment) {
  static const Icu icu;
  // The years 1 to 9999; a nonsense moment must not reach a calendar.
  const double asked = std::isnan(seconds(moment)) ? 0 : seconds(moment);
  const double inRange = std::clamp(asked, -62'135'596'800.0, 253'402'300'799.0);
  std::string text = icu.isComplete() ? dateThroughIcu(icu, inRange * 1'000) : std::string();
  return text.empty() ? plainDate(inRange) : text;
}

}  // namespace tarnwick
