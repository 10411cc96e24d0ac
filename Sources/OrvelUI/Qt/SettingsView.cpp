#include "OrvelUI/Qt/SettingsView.h"

#include <QScrollBar>

#include "OrvelUI/Qt/ControlDrawing.h"

namespace OrvelUI {

namespace {

// In points.
constexpr double sidebarWidth = 188;
constexpr double sidebarPadding = 10;
constexpr double sidebarTop = 18;
constexpr double itemHeight = 34;
constexpr double itemGap = 2;

}  // namespace

void SidebarItemWidget::setContent(const SettingsSidebar::Item& item, const FormStyle& style) {
    setOption(shownText(item.title), {}, item.chosen, item.choose);
    if (item == item_ && style == style_) return;
    item_ = item;
    style_ = style;
    update();
}

QSize SidebarItemWidget::sizeHint() const {
    return Drawing::scaled({0, 0, sidebarWidth - 2 * sidebarPadding, itemHeight}).size();
}

void SidebarItemWidget::paintEvent(QPaintEvent*) {
    PointPainter painter(this);
    const QRectF rect = painter.rect();
    const auto face = style_.colors.sidebarItem(item_.chosen);
    painter.face(rect, 8, face);
    if (highlight() > 0 && !item_.chosen) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(Drawing::color(style_.colors.highlight(isDown())));
        painter.drawRoundedRect(rect, 8, 8);
    }
    const double middle = rect.center().y();
    Drawing::symbol(painter,
                    {.name = item_.symbol,
                     .size = 18,
                     .ink = item_.chosen ? face.text : style_.colors.text(TextRole::note)},
                    {rect.left() + 20, middle});
    Drawing::label(painter,
                   {.text = item_.title,
                    .tail = {},
                    .size = 13,
                    .weight = LabelContent::Weight::medium,
                    .ink = face.text},
                   {rect.left() + 38, rect.top(), rect.width() - 44, rect.height()});
    if (hasFocus())
        Drawing::focusRing(painter, rect.adjusted(1.5, 1.5, -1.5, -1.5), 7,
                           item_.chosen ? face.text : style_.colors.focusRing());
}

SettingsView::SettingsView(SettingsModel& model) : model_(model) {
    follow(model.observe([this] { scheduleRefresh(); }));
    refresh();
}

void SettingsView::showModel(const FormStyle& now) {
    const auto sidebar = SettingsSidebar::of(model_);
    std::vector<FormOption*> options;
    for (std::size_t i = 0; i < sidebar.items.size(); ++i) {
        if (items_.size() <= i) {
            items_.push_back(new SidebarItemWidget(this));
            items_.back()->show();
        }
        items_[i]->setContent(sidebar.items[i], now);
        options.push_back(items_[i]);
    }
    settleTabStops(options);
    // Created after the sidebar, so that it follows it for screen readers and the Tab key.
    if (form_ == nullptr) form_ = new FormView(this);
    const auto content = SettingsPanes::current(model_, now.colors.theme);
    form_->setContent(content, now);
    if (shownPane_ != model_.pane.get()) form_->verticalScrollBar()->setValue(0);
    shownPane_ = model_.pane.get();
    form_->setAccessibleName(shownText(content.title));
}

QSize SettingsView::sizeHint() const {
    return Drawing::scaled({0, 0, settingsSize.width, settingsSize.height}).size();
}

void SettingsView::resizeEvent(QResizeEvent*) {
    double y = sidebarTop;
    for (auto* item : items_) {
        item->setGeometry(
            Drawing::scaled({sidebarPadding, y, sidebarWidth - 2 * sidebarPadding, itemHeight}));
        y += itemHeight + itemGap;
    }
    const int left = Drawing::scaled({0, 0, sidebarWidth, 0}).width();
    form_->setGeometry(left, 0, QWidget::width() - left, QWidget::height());
}

void SettingsView::paintEvent(QPaintEvent*) {
    PointPainter painter(this);
    const auto colors = style().colors;
    const QRectF rect = painter.rect();
    painter.fillRect(rect, Drawing::color({colors.canvas()}));
    painter.fillRect(QRectF(0, 0, sidebarWidth, rect.height()), Drawing::color({colors.sidebar()}));
    painter.fillRect(QRectF(sidebarWidth - 1, 0, 1, rect.height()),
                     Drawing::color(colors.hairline()));
}

}  // namespace OrvelUI
