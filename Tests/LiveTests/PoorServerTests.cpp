#include <QApplication>

#include "OrvelBlur/BlurSurface.h"
#include "OrvelSystem/Qt/QtMainLoop.h"

#include "BlurDesktop.h"
#include "Desktop/Eventually.h"
#include "Desktop/XServer.h"
#include "ShowPanel.h"

namespace {

class PoorServerTest : public testing::TestWithParam<std::string> {};

// A cover hides the screen even if the server lacks an extension; it must never be transparent.
TEST_P(PoorServerTest, thePanelHides) {
    const XServer server(GetParam());
    Screen screen(server.display());
    const Image background = blocks(800, 600, 8);
    screen.paintBackground(background);
    const double detail = contrast(background);
    ASSERT_GT(detail, 30);

    Process program({"/proc/self/exe", std::string(showPanelArgument)},
                    {{"PATH", std::getenv("PATH")},
                     {"DISPLAY", server.display()},
                     {"QT_QPA_PLATFORM", "xcb"},
                     {"QT_NO_XDG_DESKTOP_PORTAL", "1"}});
    EXPECT_TRUE(eventually([&] { return contrast(screen.picture()) < detail / 10; }));
    EXPECT_LT(shareChanged(screen.picture(), Image(800, 600, screen.picture().at(400, 300)), 60),
              0.01);

    screen.click(400, 300);
    EXPECT_EQ(program.waitForExit(), 0);
    EXPECT_TRUE(eventually([&] { return screen.picture().pixels == background.pixels; }));
}

INSTANTIATE_TEST_SUITE_P(Without, PoorServerTest,
                         testing::Values("Composite", "RENDER", "DAMAGE", "SHAPE", ""),
                         [](const auto& tested) {
                             return tested.param.empty() ? "nothing" : tested.param;
                         });

}  // namespace

int showPanel(int argc, char** argv) {
    const QApplication app(argc, argv);
    QtMainLoop loop;
    const auto support = BlurSupport::current();
    BlurSurface surface(OverlayPanel::make({0, 0, 800, 600}, WindowLevel::lock),
                        choose(support.skyLightAvailable, support.osMajor, support.verifiedMajors),
                        {0.1, 0.1, 0.1, 0.3}, std::nullopt, 12, loop);
    surface.panel().onClick = [&surface] { surface.hide(0.1, [] { QCoreApplication::exit(0); }); };
    surface.show(40, 0.1);
    return QCoreApplication::exec();
}
