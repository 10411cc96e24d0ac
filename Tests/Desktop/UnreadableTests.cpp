// Text behind the blur cannot be read.

#include "LockDesk.h"

namespace {

TEST(LockBlur, TextIsUnreadableAtTheSoftestRadius) {
    const std::string text =
        "Confidential merger agreement\nMargaret Thornbury director\nsettlement seventeen million";
    const std::vector<std::string> words{"confidential", "merger",    "agreement",
                                         "margaret",     "thornbury", "director",
                                         "settlement",   "seventeen", "million"};
    Desktop::Options options;
    LockDesk desk(options);
    struct Sample {
        std::string name;
        Area place;
    };
    std::vector<Sample> samples;
    for (const bool lightOnDark : {false, true})
        for (int points = 10, y = 240; points <= 18; points += 2, y += 160) {
            const std::string name =
                std::to_string(points) + (lightOnDark ? " points on dark" : " points on light");
            samples.push_back({name, desk.desktop.showText(text, points, lightOnDark ? 1240 : 560,
                                                           y, lightOnDark, name)});
        }
    const auto readHere = [&](const Image& image) {
        const auto found = readWords(image);
        return std::ranges::count_if(
            words, [&](const auto& word) { return std::ranges::find(found, word) != found.end(); });
    };
    for (const auto& [name, place] : samples)
        EXPECT_GE(readHere(desk.screen().picture(place)), 7) << name << " could not be read before";

    desk.setSettings(R"({"lockStyle": "frosted", "lockIntensity": 28})");
    desk.start();
    ASSERT_TRUE(desk.lockByShortcut());
    ASSERT_TRUE(desk.cardSays({0, 0, 1920, 1080}, "enter your password"));
    desk.desktop.keepPicture("locked");
    for (const auto& [name, place] : samples) {
        const Image picture = desk.screen().picture(place);
        EXPECT_EQ(readHere(picture), 0) << name;
        EXPECT_EQ(readHere(picture.stretched()), 0) << name << ", with its contrast brought out";
    }
}

}  // namespace
