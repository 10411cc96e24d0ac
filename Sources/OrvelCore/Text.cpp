#include "OrvelCore/Text.h"

#include <algorithm>
#include <vector>

#include <unicode/brkiter.h>
#include <unicode/coll.h>
#include <unicode/dtptngen.h>
#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>
#include <unicode/uchar.h>
#include <unicode/utext.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

namespace OrvelCore {

namespace {

icu::StringPiece piece(std::string_view text) {
    return {text.data(), static_cast<int32_t>(text.size())};
}

icu::UnicodeString unicode(std::string_view text) {
    return icu::UnicodeString::fromUTF8(piece(text));
}

std::string utf8(const icu::UnicodeString& text) {
    std::string result;
    text.toUTF8String(result);
    return result;
}

icu::Locale icuLocale(const Locale& locale) {
    return icu::Locale::createCanonical(locale.id.c_str());
}

std::unique_ptr<icu::TimeZone> icuTimeZone(const TimeZone& timeZone) {
    return std::unique_ptr<icu::TimeZone>(
        icu::TimeZone::createTimeZone(unicode(timeZone.id)));  // never null
}

UDate icuDate(Date date) {
    return secondsSince1970(clampedToCalendar(date)) * 1000;
}

/// Returns the code point at `offset` and advances `offset` past it; negative if the byte is not
/// valid UTF-8.
UChar32 nextCodePoint(std::string_view text, std::size_t& offset) {
    auto position = static_cast<int32_t>(offset);
    UChar32 codePoint = 0;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"  // in ICU's macro
    U8_NEXT(text.data(), position, static_cast<int32_t>(text.size()), codePoint);
#pragma GCC diagnostic pop
    offset = static_cast<std::size_t>(position);
    return codePoint;
}

bool isWhitespace(UChar32 codePoint) {
    return codePoint >= 0 && u_isUWhiteSpace(codePoint);
}

/// UTF-16 text with the byte offset of each unit. The destructor wipes it, because it may contain a
/// password.
struct Utf16 {
    std::vector<char16_t> units;
    std::vector<std::size_t> offsets;

    explicit Utf16(std::string_view text) {
        // There are never more units than bytes, so the vectors do not reallocate and leave no
        // copies behind.
        units.reserve(text.size());
        offsets.reserve(text.size() + 1);
        for (std::size_t offset = 0; offset < text.size();) {
            const std::size_t start = offset;
            UChar32 codePoint = nextCodePoint(text, offset);
            if (codePoint < 0) codePoint = 0xFFFD;
            if (U_IS_BMP(codePoint)) {
                units.push_back(static_cast<char16_t>(codePoint));
                offsets.push_back(start);
            } else {
                units.push_back(U16_LEAD(codePoint));
                units.push_back(U16_TRAIL(codePoint));
                offsets.insert(offsets.end(), 2, start);
            }
        }
        offsets.push_back(text.size());
    }
    Utf16(const Utf16&) = delete;
    Utf16& operator=(const Utf16&) = delete;
    ~Utf16() {
        for (volatile char16_t& unit : units) unit = 0;
    }
};

/// The byte offsets at which characters begin, followed by the length of the text. If ICU's data is
/// missing, code points are used instead of characters.
std::vector<std::size_t> boundaries(std::string_view text) {
    const Utf16 utf16(text);
    std::vector<std::size_t> result;
    UErrorCode status = U_ZERO_ERROR;
    UText view = UTEXT_INITIALIZER;
    utext_openUChars(&view, utf16.units.data(), static_cast<int64_t>(utf16.units.size()), &status);
    const std::unique_ptr<icu::BreakIterator> iterator(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    if (U_SUCCESS(status)) iterator->setText(&view, status);
    if (U_SUCCESS(status)) {
        for (int32_t at = iterator->first(); at != icu::BreakIterator::DONE; at = iterator->next())
            result.push_back(utf16.offsets[static_cast<std::size_t>(at)]);
    } else {
        result = utf16.offsets;
        result.erase(std::unique(result.begin(), result.end()), result.end());
    }
    utext_close(&view);
    return result;
}

}  // namespace

TimeZone currentTimeZone() {
    const std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::detectHostTimeZone());
    icu::UnicodeString id;
    return {zone ? utf8(zone->getID(id)) : "Etc/UTC"};
}

namespace Text {

std::size_t characterCount(std::string_view text) {
    return text.empty() ? 0 : boundaries(text).size() - 1;
}

std::size_t lastCharacterStart(std::string_view text) {
    if (text.empty()) return 0;
    const auto offsets = boundaries(text);
    return offsets[offsets.size() - 2];
}

std::string firstCharacters(std::string_view text, std::size_t count) {
    if (text.size() <= count) return std::string(text);  // each character has at least one byte
    const auto offsets = boundaries(text);
    return std::string(text.substr(0, offsets[std::min(count, offsets.size() - 1)]));
}

std::string trim(std::string_view text) {
    std::size_t first = text.size();
    std::size_t end = 0;
    for (std::size_t offset = 0; offset < text.size();) {
        const std::size_t start = offset;
        if (isWhitespace(nextCodePoint(text, offset))) continue;
        first = std::min(first, start);
        end = offset;
    }
    return end == 0 ? std::string() : std::string(text.substr(first, end - first));
}

std::vector<std::string> splitOnWhitespace(std::string_view text) {
    std::vector<std::string> pieces;
    bool isInside = false;
    for (std::size_t offset = 0; offset < text.size();) {
        const std::size_t start = offset;
        const bool isBlank = isWhitespace(nextCodePoint(text, offset));
        if (!isBlank && !isInside) pieces.emplace_back();
        if (!isBlank) pieces.back() += text.substr(start, offset - start);
        isInside = !isBlank;
    }
    return pieces;
}

std::string upperCase(std::string_view text) {
    return utf8(unicode(text).toUpper(icu::Locale::getRoot()));
}

std::string lowerCase(std::string_view text) {
    return utf8(unicode(text).toLower(icu::Locale::getRoot()));
}

std::string dateFromTemplate(Date date, std::string_view skeleton, const Locale& locale,
                             const TimeZone& timeZone) {
    return formatDate(date, dateFormatPattern(skeleton, locale), locale, timeZone);
}

std::string dateFormatPattern(std::string_view skeleton, const Locale& locale) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::DateTimePatternGenerator> generator(
        icu::DateTimePatternGenerator::createInstance(icuLocale(locale), status));
    if (U_FAILURE(status)) return {};
    const icu::UnicodeString pattern = generator->getBestPattern(unicode(skeleton), status);
    return U_SUCCESS(status) ? utf8(pattern) : std::string();
}

std::string formatDate(Date date, std::string_view pattern, const Locale& locale,
                       const TimeZone& timeZone) {
    UErrorCode status = U_ZERO_ERROR;
    icu::SimpleDateFormat format(unicode(pattern), icuLocale(locale), status);
    if (U_FAILURE(status)) return {};
    format.adoptTimeZone(icuTimeZone(timeZone).release());
    icu::UnicodeString text;
    format.format(icuDate(date), text);
    return utf8(text);
}

std::chrono::year_month_day calendarDay(Date date, const TimeZone& timeZone) {
    UErrorCode status = U_ZERO_ERROR;
    int32_t zone = 0;
    int32_t daylight = 0;
    icuTimeZone(timeZone)->getOffset(icuDate(date), false, zone, daylight, status);
    const Date local =
        clampedToCalendar(date) + std::chrono::milliseconds(int64_t{zone} + daylight);
    return std::chrono::floor<std::chrono::days>(local);
}

}  // namespace Text

struct NaturalOrder::Rules {
    std::unique_ptr<icu::Collator> collator;
};

NaturalOrder::NaturalOrder(const Locale& locale) {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::Collator> collator(
        icu::Collator::createInstance(icuLocale(locale), status));
    if (U_SUCCESS(status)) collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status);
    if (U_SUCCESS(status)) rules_ = std::make_shared<const Rules>(Rules{std::move(collator)});
}

bool NaturalOrder::operator()(std::string_view a, std::string_view b) const {
    if (!rules_) return a < b;
    UErrorCode status = U_ZERO_ERROR;
    return rules_->collator->compareUTF8(piece(a), piece(b), status) == UCOL_LESS;
}

}  // namespace OrvelCore
