// Draws the status item's panel in several states on one sheet, to be looked at.
//
//   QT_QPA_PLATFORM=offscreen [QT_SCALE_FACTOR=1.5] MenuPreview sheet.png

#include <QApplication>
#include <QPainter>
#include <cstdio>
#include <functional>

#include "OrvelUI/Linux/ControlDrawing.h"
#include "OrvelUI/Linux/MenuBarPictures.h"
#include "OrvelUI/Linux/MenuPanelView.h"

namespace {

using namespace OrvelUI;
using OrvelCore::MenuBarIconState;
using OrvelCore::Shortcut;

const OrvelCore::Date now = OrvelCore::dateFromSecondsSince1970(1'795'000'000);

void fill(MenuPanelModel& model) {
    model.now.set(now);
    model.frontAppName.set("Thunderbird");
    model.lockMacShortcut.set(Shortcut::lockMac());
    model.lockAppShortcut.set(Shortcut::lockApp());
    model.privateChoices.set({{.id = "a", .name = "Files"},
                              {.id = "b", .name = "Signal", .chosen = true},
                              {.id = "c", .name = "Terminal"},
                              {.id = "d", .name = "Thunderbird", .chosen = true}});
    model.privateAppsOn.set(true);
}

using Prepare = std::function<void(MenuPanelModel&)>;

const std::vector<Prepare> states{
    [](MenuPanelModel&) {},
    [](MenuPanelModel& model) {
        fill(model);
        model.quickBlurShortcut.set(
            Shortcut{11, "B", Shortcut::Modifiers::command | Shortcut::Modifiers::shift});
    },
    [](MenuPanelModel& model) {
        fill(model);
        model.showsPrivateChoices.set(true);
        model.focusBlurOn.set(true);
    },
    [](MenuPanelModel& model) {
        fill(model);
        model.frontAppName.set(std::nullopt);
        model.lockedApps.set({{1, "Signal", now - std::chrono::seconds(20)},
                              {2, "The Extraordinarily Long Application of Somebody Else",
                               now - std::chrono::minutes(90)}});
        model.updateVersion.set("2.1");
    },
    [](MenuPanelModel& model) {
        fill(model);
        auto choices = model.privateChoices.get();
        for (int i = 0; i < 20; ++i)
            choices.push_back({.id = std::to_string(i), .name = "App " + std::to_string(i)});
        model.privateChoices.set(choices);
        model.showsPrivateChoices.set(true);
    },
};

}  // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: MenuPreview sheet.png\n");
        return 2;
    }
    const double scale = Drawing::uiScale();
    const QSize cell = QSize(360, 690) * scale;
    const int columns = static_cast<int>(states.size());
    QImage sheet(QSize(columns * cell.width(), cell.height() + 90) * app.devicePixelRatio(),
                 QImage::Format_ARGB32_Premultiplied);
    sheet.setDevicePixelRatio(app.devicePixelRatio());
    sheet.fill(QColor(120, 140, 170));
    QPainter painter(&sheet);
    painter.fillRect(QRect(columns / 2 * cell.width(), 0, sheet.width(), sheet.height()),
                     QColor(235, 236, 240));
    Drawing::Shadow shadow(0.45, 24, 6);
    for (int i = 0; i < columns; ++i) {
        MenuPanelModel model;
        states[static_cast<std::size_t>(i)](model);
        MenuPanelView view(model, true, false);
        view.setAttribute(Qt::WA_TranslucentBackground);
        view.resize(view.fittingSize(1000));
        view.show();
        painter.save();
        painter.translate(i * cell.width() + 20, 20);
        shadow.draw(painter, view.outline());
        painter.drawPixmap(0, 0, view.grab());
        painter.restore();
    }
    int x = 20;
    const int y = cell.height() + 10;
    for (const auto state :
         {MenuBarIconState::rest, MenuBarIconState::partial, MenuBarIconState::full})
        for (const int side : {16, 22, 24, 32, 48}) {
            painter.drawImage(x, y, Drawing::menuBarIcon(state, side, {}));
            x += side + 12;
        }
    for (const bool hidden : {false, true}) {
        MenuBarDrawingWidget drawing;
        drawing.setContent({.hidden = hidden});
        drawing.resize(drawing.sizeHint());
        drawing.setAttribute(Qt::WA_TranslucentBackground);
        painter.drawPixmap(x + 20, y, drawing.grab());
        x += drawing.width() + 20;
    }
    painter.end();
    return sheet.save(QString::fromLocal8Bit(argv[1])) ? 0 : 1;
}
