#include "OrvelUpdates/Appcast.h"

#include <charconv>
#include <limits>
#include <memory>
#include <utility>

#include <expat.h>

#include "OrvelCore/Text.h"

namespace OrvelUpdates {

namespace {

/// Accepts a decimal integer with an optional sign and nothing else.
std::optional<std::int64_t> integer(std::string_view text) {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) return {};
    }
    std::int64_t value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end) return {};
    return value;
}

/// The attributes of one element in expat's format.
class Attributes {
  public:
    explicit Attributes(const XML_Char** pairs) : pairs_(pairs) {}
    /// `nullopt` if the attribute is missing.
    std::optional<std::string_view> operator[](std::string_view name) const {
        for (const XML_Char** pair = pairs_; pair[0] != nullptr; pair += 2)
            if (pair[0] == name) return pair[1];
        return {};
    }

  private:
    const XML_Char** pairs_;
};

/// Receives the parser's events and collects the items.
class Delegate {
  public:
    std::vector<AppcastItem> items;

    void startElement(std::string_view element, const Attributes& attributes) {
        text_.clear();
        if (element == "item") {
            inItem_ = true;
            item_ = {};
            build_.reset();
            url_.reset();
        } else if (element == "enclosure" && inItem_) {
            startEnclosure(attributes);
        }
    }

    void foundCharacters(std::string_view characters) { text_ += characters; }

    void endElement(std::string_view element) {
        if (element == "title") {
            if (inItem_) item_.title = value();
        } else if (element == "sparkle:version") {
            if (const auto build = integer(value())) build_ = build;
        } else if (element == "sparkle:shortVersionString") {
            item_.shortVersion = value();
        } else if (element == "sparkle:minimumSystemVersion") {
            item_.minimumSystemVersion = value();
        } else if (element == "item") {
            endItem();
        }
        text_.clear();
    }

  private:
    std::string value() const { return OrvelCore::Text::trim(text_); }

    void startEnclosure(const Attributes& attributes) {
        url_ = URL::parse(attributes["url"].value_or(""));
        item_.edSignature = attributes["sparkle:edSignature"].value_or("");
        item_.length = integer(attributes["length"].value_or("")).value_or(0);
        if (!build_) build_ = integer(attributes["sparkle:version"].value_or(""));
        if (item_.shortVersion.empty())
            item_.shortVersion = attributes["sparkle:shortVersionString"].value_or("");
    }

    void endItem() {
        inItem_ = false;
        if (!url_ || !build_) return;
        // Copy the item: the end of an enclosing item element uses it again.
        auto item = item_;
        item.url = *url_;
        item.build = *build_;
        if (item.shortVersion.empty()) item.shortVersion = std::to_string(item.build);
        items.push_back(std::move(item));
    }

    bool inItem_ = false;
    std::string text_;
    // The current item, and its required fields.
    AppcastItem item_;
    std::optional<std::int64_t> build_;
    std::optional<URL> url_;
};

/// The state of one parse, which is the user data of its parser.
struct Reading {
    std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser{
        XML_ParserCreate(nullptr),
        XML_ParserFree};  // without namespaces: a prefix is part of the name
    Delegate delegate;

    static Reading& of(void* userData) { return *static_cast<Reading*>(userData); }
    static void startElement(void* userData, const XML_Char* name, const XML_Char** attributes) {
        of(userData).delegate.startElement(name, Attributes(attributes));
    }
    static void endElement(void* userData, const XML_Char* name) {
        of(userData).delegate.endElement(name);
    }
    static void characters(void* userData, const XML_Char* text, int count) {
        of(userData).delegate.foundCharacters({text, static_cast<std::size_t>(count)});
    }
    static void declareEntity(void* userData, const XML_Char*, int, const XML_Char*, int,
                              const XML_Char*, const XML_Char*, const XML_Char*, const XML_Char*) {
        XML_StopParser(of(userData).parser.get(), XML_FALSE);
    }
};

}  // namespace

std::expected<std::vector<AppcastItem>, AppcastError> AppcastParser::parse(std::string_view data) {
    Reading reading;
    const XML_Parser parser = reading.parser.get();
    if (parser == nullptr) return std::unexpected(AppcastError::malformedFeed);
    XML_SetUserData(parser, &reading);
    XML_SetElementHandler(parser, Reading::startElement, Reading::endElement);
    XML_SetCharacterDataHandler(parser, Reading::characters);
    XML_SetEntityDeclHandler(parser, Reading::declareEntity);

    // A call takes at most INT_MAX bytes, so long data is split. The parser copies the pieces only
    // if there are several.
    constexpr std::size_t largestPiece = std::numeric_limits<int>::max();
    do {
        const auto piece = data.substr(0, largestPiece);
        data.remove_prefix(piece.size());
        if (XML_Parse(parser, piece.data(), static_cast<int>(piece.size()), data.empty()) !=
            XML_STATUS_OK)
            return std::unexpected(AppcastError::malformedFeed);
    } while (!data.empty());

    auto& items = reading.delegate.items;
    if (items.empty()) return std::unexpected(AppcastError::noItems);
    return std::move(items);
}

}  // namespace OrvelUpdates
