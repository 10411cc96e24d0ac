// Draws every state of the lock card, the pill and the badge on one sheet, to be looked at.
//
//   QT_QPA_PLATFORM=offscreen [QT_SCALE_FACTOR=1.5] UIPreview sheet.png

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QRadialGradient>
#include <cmath>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "OrvelUI/Linux/Drawing.h"
#include "OrvelUI/Linux/LockViews.h"

namespace {

using namespace OrvelUI;

const OrvelCore::Date now = OrvelCore::dateFromSecondsSince1970(1'795'000'000);

std::shared_ptr<const OrvelSystem::Picture> portrait() {
    constexpr int side = 96;
    auto picture = std::make_shared<OrvelSystem::Picture>();
    picture->width = picture->height = side;
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x) {
            const bool head = std::hypot(x - 48, y - 38) < 18;
            const bool body = std::hypot(x - 48, y - 100) < 38;
            const auto sky = static_cast<std::uint32_t>(200 - y);
            picture->pixels.push_back(head   ? 0xFFF2C9A5
                                      : body ? 0xFF34506E
                                             : 0xFF000000 | (sky << 16) | (170U << 8) | 140U);
        }
    return picture;
}

struct Cell {
    std::string title;
    std::unique_ptr<LockCardModel> model;
    std::unique_ptr<OverlayView> view;
    /// How long after its showing the view is looked at.
    int milliseconds = 0;
};

QElapsedTimer started() {
    QElapsedTimer timer;
    timer.start();
    return timer;
}

using Prepare = std::function<void(LockCardModel&)>;

std::unique_ptr<LockCardModel> makeModel(const std::string& name, bool touchID,
                                         const Prepare& prepare) {
    auto model = std::make_unique<LockCardModel>(name, nullptr, touchID);
    model->now.set(now);
    model->locale.set({"en_US"});
    model->timeZone.set({"Europe/Berlin"});
    if (prepare) prepare(*model);
    return model;
}

void type(LockCardModel& model, int characters) {
    model.type(std::string(static_cast<std::size_t>(characters), 'x'));
}

std::vector<Cell> makeCells() {
    std::vector<Cell> cells;
    const std::optional<NotchMetrics> notch = NotchMetrics::from(640, 32, 220, 220);
    const auto card = [&](const std::string& title, const std::string& name, bool touchID,
                          const Prepare& prepare, std::optional<NotchMetrics> on = {}) {
        auto model = makeModel(name, touchID, prepare);
        auto view = makeLockScreenContent(*model, on, true);
        cells.push_back({title, std::move(model), std::move(view)});
    };
    const std::string ada = "Ada Lovelace";
    card("ready, fingerprint", ada, true, {});
    card("ready", ada, false, {});
    card("six characters", ada, true, [](auto& m) { type(m, 6); });
    card("forty characters", ada, false, [](auto& m) { type(m, 40); });
    card("verifying", ada, true, [](auto& m) { m.status.set(LockCardModel::Verifying{}); });
    card("wrong password", ada, true, [](auto& m) { m.registerFailure(); });
    card("cooldown", ada, true,
         [](auto& m) { m.status.set(LockCardModel::Cooldown{now + OrvelCore::Seconds(38.2)}); });
    card("paused", ada, true, [](auto& m) { m.status.set(LockCardModel::PasswordsPaused{}); });
    card("unavailable", ada, false, [](auto& m) { m.status.set(LockCardModel::Unavailable{}); });
    card("no keyboard", ada, true, [](auto& m) { m.hasKeyboard.set(false); });
    card("away message", ada, true,
         [](auto& m) { m.awayMessage.set("Back at three. Please leave the build running, ta!"); });
    card("right to left", "محمد بن موسى الخوارزمي أبو عبد الله صاحب الجبر والمقابلة", true,
         [](auto& m) { m.locale.set({"ar_EG"}); });
    card("long name", "Wolfeschlegelsteinhausenbergerdorff Hubert Blaine the Third", false, {});
    card("picture", "Grace Hopper", true, [](auto& m) { m.picture.set(portrait()); });
    card("no clock", "Cher", false, [](auto& m) { m.showsClock.set(false); });
    card("notch", ada, true, {}, notch);

    for (const int milliseconds : {60, 110, 160, 220}) {
        auto model = makeModel(ada, true, {});
        auto view = makeLockScreenContent(*model, {}, false);
        cells.push_back({"opening, " + std::to_string(milliseconds) + " ms", std::move(model),
                         std::move(view), milliseconds});
    }

    const auto pill = [&](const std::string& title, const Prepare& prepare,
                          std::optional<NotchMetrics> on = {}) {
        auto model = makeModel(ada, true, prepare);
        auto view = makeSecondaryDisplayPill(*model, on);
        cells.push_back({title, std::move(model), std::move(view)});
    };
    pill("pill", {});
    pill("pill, no clock", [](auto& m) { m.showsClock.set(false); });
    pill("pill, notch", {}, notch);

    const auto badge = [&](const std::string& title, const std::string& app, bool open,
                           const Prepare& prepare) {
        auto model = makeModel(app, true, prepare);
        auto view = makeAppLockBadge(
            *model, open, true, [] {}, [] {});
        cells.push_back({title, std::move(model), std::move(view)});
    };
    badge("badge", "Signal", false, {});
    badge("badge, icon, long name", "The Extraordinarily Long Application", false,
          [](auto& m) { m.picture.set(portrait()); });
    badge("badge open", "Signal", true, {});
    badge("badge open, wrong", "Thunderbird", true, [](auto& m) {
        m.picture.set(portrait());
        m.registerFailure();
    });
    badge("badge open, typing", "Files", true, [](auto& m) { type(m, 9); });
    return cells;
}

void paintBackdrop(QPainter& painter, const QRect& rect, int seed) {
    QLinearGradient base(rect.topLeft(), rect.bottomRight());
    base.setColorAt(0, QColor::fromHsv((215 + seed * 29) % 360, 110, 150));
    base.setColorAt(1, QColor::fromHsv((250 + seed * 29) % 360, 130, 90));
    painter.fillRect(rect, base);
    QRadialGradient glow(rect.topLeft() + QPoint(rect.width() * 2 / 3, rect.height() / 3),
                         rect.width() / 2.0);
    glow.setColorAt(0, seed % 4 == 3 ? QColor(250, 250, 250, 230) : QColor(255, 220, 180, 110));
    glow.setColorAt(1, QColor(255, 220, 180, 0));
    painter.fillRect(rect, glow);
}

}  // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: UIPreview sheet.png\n");
        return 2;
    }
    const auto cells = makeCells();
    constexpr int columns = 4;
    const QSize cell = QSize(470, 260) * Drawing::uiScale();
    const int rows = static_cast<int>((cells.size() + columns - 1) / columns);
    const double ratio = app.devicePixelRatio();
    QImage sheet(QSize(columns * cell.width(), rows * cell.height()) * ratio,
                 QImage::Format_ARGB32_Premultiplied);
    sheet.setDevicePixelRatio(ratio);
    QPainter painter(&sheet);
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const int index = static_cast<int>(i);
        const QRect area(QPoint(index % columns * cell.width(), index / columns * cell.height()),
                         cell);
        paintBackdrop(painter, area, index);
        auto& view = *cells[i].view;
        view.show();
        for (const QElapsedTimer shown = started(); shown.elapsed() < cells[i].milliseconds;)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 1);
        QCoreApplication::processEvents();
        auto target = view.placement(cell).topLeft();
        // The notch of the preview's display is as far from its middle as of this cell's.
        if (std::abs(target.x() + view.width() / 2 - cell.width() / 2) > 40)
            target.setX((cell.width() - view.width()) / 2);
        painter.save();
        painter.setClipRect(area);
        painter.drawPixmap(area.topLeft() + target, view.grab());
        painter.restore();
        painter.setPen(QColor(255, 255, 255, 150));
        painter.setFont(Drawing::font(11, LabelContent::Weight::regular));
        painter.drawText(area.adjusted(10, 0, 0, -8), Qt::AlignLeft | Qt::AlignBottom,
                         QString::fromStdString(cells[i].title));
    }
    painter.end();
    if (!sheet.save(QString::fromLocal8Bit(argv[1]))) {
        std::fprintf(stderr, "UIPreview: can't write %s\n", argv[1]);
        return 1;
    }
    return 0;
}
