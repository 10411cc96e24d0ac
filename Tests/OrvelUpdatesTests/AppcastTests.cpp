#include "OrvelUpdates/Appcast.h"

#include "Support/SignedPackages.h"

namespace {

constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();

/// The items that are read from a feed; empty if the feed is refused.
std::vector<AppcastItem> read(const std::string& items) {
    return AppcastParser::parse(feed(items)).value_or(std::vector<AppcastItem>());
}

std::string versioned(const std::string& before, const std::string& inside,
                      const std::string& after = "") {
    return "<item>" + before + "<enclosure url='https://a/b' " + inside + "/>" + after + "</item>";
}

}  // namespace

TEST(Appcast, ReadsAllThatItKnowsInTheOrderOfTheFeed) {
    const auto items = read(R"(
        <sparkle:version>99</sparkle:version>
        <item>
          <title> Karvo <![CDATA[<1.2>]]> &amp; more
          </title>
          <sparkle:version> +12 </sparkle:version>
          <sparkle:shortVersionString>1.2</sparkle:shortVersionString>
          <sparkle:minimumSystemVersion>14.0</sparkle:minimumSystemVersion>
          <other><sparkle:edSignature>x</sparkle:edSignature></other>
          <enclosure url="https://a/Karvo 1.2.pkg?x=%20&amp;y" sparkle:edSignature="c2ln" length="7"/>
        </item>
        <item><title>first</title><title>second</title>
          <enclosure url="gone" length="1" sparkle:version="3" sparkle:shortVersionString="0.3"/>
          <enclosure url="b.pkg" length="x" sparkle:version="4" sparkle:shortVersionString="0.4"/>
        </item>)");
    EXPECT_THAT(items,
                ElementsAre(AppcastItem{.title = "Karvo <1.2> & more",
                                        .build = 12,
                                        .shortVersion = "1.2",
                                        .url = *URL::parse("https://a/Karvo%201.2.pkg?x=%20&y"),
                                        .edSignature = "c2ln",
                                        .length = 7,
                                        .minimumSystemVersion = "14.0"},
                            AppcastItem{.title = "second",
                                        .build = 3,
                                        .shortVersion = "0.3",
                                        .url = *URL::parse("b.pkg")}));
}

TEST(Appcast, FindsTheBuildInElementOrAttribute) {
    const auto element = [](const std::string& value) {
        return "<sparkle:version>" + value + "</sparkle:version>";
    };
    const struct {
        std::string item;
        std::optional<std::int64_t> build;
    } cases[] = {
        {versioned(element("5"), "sparkle:version='6'"), 5},
        {versioned("", "sparkle:version='6'", element("5")), 5},
        {versioned("", "sparkle:version='6'", element("5x")), 6},
        {versioned(element("12a"), ""), {}},
        {versioned("", "sparkle:version=' 6'"), {}},
        {versioned("", "version='6'"), {}},
        {versioned(element("-3"), ""), -3},
        {versioned(element("+-3"), ""), {}},
        {versioned(element("1.0"), ""), {}},
        {versioned(element(""), ""), {}},
        {versioned(element("9223372036854775807"), ""), most},
        {versioned(element("9223372036854775808"), ""), {}},
        {versioned("<deep>" + element("8") + "</deep>", ""), 8},
    };
    for (const auto& [item, build] : cases) {
        // The items before and after it must not be affected.
        const std::string other = versioned(element("1"), "");
        std::vector<std::int64_t> builds;
        for (const auto& found : read(fmt::format("{0}{1}{0}", other, item))) {
            builds.push_back(found.build);
            EXPECT_EQ(found.shortVersion, std::to_string(found.build)) << item;
        }
        auto expected = std::vector<std::int64_t>{1, 1};
        if (build) expected.insert(expected.begin() + 1, *build);
        EXPECT_EQ(builds, expected) << item;
    }
}

TEST(Appcast, RefusesWhatIsNoFeed) {
    const struct {
        std::string text;
        AppcastError error;
    } cases[] = {
        {"", AppcastError::malformedFeed},
        {"404 not found", AppcastError::malformedFeed},
        {feed(versioned("", "sparkle:version='1'")) + "<", AppcastError::malformedFeed},
        {feed("<item>"), AppcastError::malformedFeed},
        {feed("\x01"), AppcastError::malformedFeed},
        {feed("\xff"), AppcastError::malformedFeed},
        {std::string("<rss>\0</rss>", 12), AppcastError::malformedFeed},
        {"<!DOCTYPE rss [<!ENTITY a 'b'>]>" + feed(versioned("", "sparkle:version='1'")),
         AppcastError::malformedFeed},
        {"<!DOCTYPE rss [<!ENTITY % a SYSTEM 'file:///etc/passwd'> %a;]><rss/>",
         AppcastError::malformedFeed},
        {feed(""), AppcastError::noItems},
        {feed("<item><sparkle:version>1</sparkle:version></item>"), AppcastError::noItems},
        {feed("<item><sparkle:version>1</sparkle:version></item>"
              "<enclosure url='https://a/b' sparkle:version='1'/>"),
         AppcastError::noItems},
        {feed(versioned("", "sparkle:version='1'", "<enclosure/>")), AppcastError::noItems},
    };
    for (const auto& [text, error] : cases) {
        const auto items = AppcastParser::parse(text);
        ASSERT_FALSE(items) << text;
        EXPECT_EQ(items.error(), error) << text;
    }
    EXPECT_TRUE(
        AppcastParser::parse("<!DOCTYPE rss>" + feed(versioned("", "sparkle:version='1'"))));
}

TEST(AppcastSignature, FailsUnlessEverythingFits) {
    const SigningKey key;
    const SigningKey other;
    const std::string package = "package";
    const auto raw = key.rawSignature(package);
    const struct {
        std::string signature;
        std::int64_t length;
        bool verifies;
    } cases[] = {
        {base64(raw), 7, true},
        {base64(raw), 0, true},
        {base64(raw), -1, true},
        {base64(raw), 6, false},
        {base64(raw), 8, false},
        {base64(raw), most, false},
        {"", 7, false},
        {base64(raw.substr(1)), 7, false},
        {base64(raw + '\0'), 7, false},
        {base64(raw).substr(0, 86), 7, false},
        {base64(raw) + "\n", 7, false},
        {" " + base64(raw), 7, false},
        {other.signature(package), 7, false},
        {key.signature("Package"), 7, false},
    };
    for (const auto& [signature, length, verifies] : cases) {
        const AppcastItem item{.edSignature = signature, .length = length};
        EXPECT_EQ(AppcastSignature::verify(package, item, key.publicHalf), verifies)
            << signature << ' ' << length;
        EXPECT_FALSE(AppcastSignature::verify(package, item, std::nullopt));
    }
    for (const char* const text : {"", "AAAA", "not base64 at all, but 44 characters long ..."})
        EXPECT_FALSE(AppcastSignature::publicKeyFromBase64(text)) << text;
    EXPECT_EQ(AppcastSignature::publicKeyFromBase64(
                  base64({reinterpret_cast<const char*>(key.publicHalf.raw.data()), 32})),
              key.publicHalf);
}

TEST(AppcastSignature, NoSingleBitOfPackageSignatureOrKeyMayChange) {
    const SigningKey key;
    const std::string package = "a small package";
    const AppcastItem item{.edSignature = key.signature(package)};
    for (std::size_t bit = 0; bit < package.size() * 8; ++bit)
        EXPECT_FALSE(AppcastSignature::verify(flipped(package, bit), item, key.publicHalf)) << bit;
    for (std::size_t bit = 0; bit < item.edSignature.size() * 8; ++bit) {
        const AppcastItem changed{.edSignature = flipped(item.edSignature, bit)};
        EXPECT_FALSE(AppcastSignature::verify(package, changed, key.publicHalf)) << bit;
    }
    for (std::size_t bit = 0; bit < 256; ++bit) {
        auto changed = key.publicHalf;
        changed.raw[bit / 8] = static_cast<unsigned char>(changed.raw[bit / 8] ^ (1 << bit % 8));
        EXPECT_FALSE(AppcastSignature::verify(package, item, changed)) << bit;
    }
}
