#include "OrvelUI/Qt/MenuPanelView.h"

#include <QScrollBar>
#include <cmath>
#include <utility>

#include "OrvelUI/Linux/Wording.h"
#include "OrvelUI/Qt/ControlAccessibility.h"
#include "OrvelUI/Qt/Drawing.h"

namespace OrvelUI {

namespace {

QScrollArea* makeScroller(QWidget* parent) {
    auto* const scroller = new QScrollArea(parent);
    scroller->setFrameShape(QFrame::NoFrame);
    scroller->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroller->setFocusPolicy(Qt::NoFocus);
    scroller->viewport()->setAutoFillBackground(false);
    scroller->verticalScrollBar()->setStyleSheet(QStringLiteral(
        "QScrollBar { background: transparent; width: 8px; margin: 2px 2px 2px 0 }"
        "QScrollBar::handle { background: rgba(245, 246, 248, 70); border-radius: 3px;"
        " min-height: 28px }"
        "QScrollBar::add-line, QScrollBar::sub-line { height: 0 }"
        "QScrollBar::add-page, QScrollBar::sub-page { background: none }"));
    return scroller;
}

}  // namespace

MenuPanelView::MenuPanelView(MenuPanelModel& model, bool reduceMotion, bool increasedContrast,
                             QWidget* parent)
    : QWidget(parent),
      model_(model),
      reduceMotion_(reduceMotion),
      increasedContrast_(increasedContrast) {
    installControlAccessibility();
    header_ = makeRow(this);
    scroller_ = makeScroller(this);
    body_ = new QWidget;
    scroller_->setWidget(body_);
    body_->setAutoFillBackground(false);
    connect(scroller_->verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { update(); });
    footer_ = makeRow(this);

    const auto observe = [this](auto& field) {
        observations_.push_back(field.observe([this](const auto&) { changed(); }));
    };
    observe(model.frontAppName);
    observe(model.quickBlurOn);
    observe(model.focusBlurOn);
    observe(model.privateAppsOn);
    observe(model.privateChoices);
    observe(model.showsPrivateChoices);
    observe(model.lockedApps);
    observe(model.now);
    observe(model.lockMacShortcut);
    observe(model.lockAppShortcut);
    observe(model.quickBlurShortcut);
    observe(model.focusBlurShortcut);
    observe(model.updateVersion);
    observe(model.restartWaits);
    refresh();
}

MenuPanelRowWidget* MenuPanelView::makeRow(QWidget* parent) {
    return new MenuPanelRowWidget(
        reduceMotion_, [this](const MenuPanelAction& action) { perform(model_, action); }, parent);
}

// A refreshed model changes field by field, but the view is updated once.
void MenuPanelView::changed() {
    if (std::exchange(isStale_, true)) return;
    QMetaObject::invokeMethod(
        this, [this] { refresh(); }, Qt::QueuedConnection);
}

void MenuPanelView::refresh() {
    isStale_ = false;
    auto content = MenuPanelContent::of(model_, increasedContrast_);
    if (content == content_) return;
    const double before = content_.bodyHeight();
    content_ = std::move(content);
    setAccessibleName(QString::fromStdString(Wording::shown(content_.accessibleName)));
    header_->setContent(content_.header);
    footer_->setContent(content_.footer);
    auto old = std::exchange(rows_, {});
    for (const auto& row : content_.rows) {
        const auto known = old.find(row.id);
        MenuPanelRowWidget* widget = nullptr;
        if (known != old.end()) {
            widget = known->second;
            old.erase(known);
        } else {
            widget = makeRow(body_);
            widget->show();
        }
        widget->setContent(row);
        rows_.emplace(row.id, widget);
    }
    for (const auto& [id, widget] : old) {
        // Deferred, because the action that removes the row may have come from the row itself.
        widget->hide();
        widget->deleteLater();
    }
    layOut();
    setTabOrders();
    if (content_.bodyHeight() != before) model_.onResize();
}

void MenuPanelView::setTabOrders() {
    QWidget* last = nullptr;
    const auto add = [&last](const MenuPanelRowWidget& row) {
        for (QWidget* widget : row.focusable()) {
            if (last != nullptr) setTabOrder(last, widget);
            last = widget;
        }
    };
    add(*header_);
    for (const auto& row : content_.rows) add(*rows_.at(row.id));
    add(*footer_);
}

QSize MenuPanelView::fittingSize(double room) const {
    return Drawing::scaled(
               {0, 0, MenuPanelContent::width, content_.height(room / Drawing::uiScale())})
        .size();
}

QPainterPath MenuPanelView::outline() const {
    QPainterPath path;
    const double radius = MenuPanelContent::cornerRadius * Drawing::uiScale();
    path.addRoundedRect(rect(), radius, radius);
    return path;
}

void MenuPanelView::focusFirst() {
    for (const auto& row : content_.rows) {
        const auto widgets = rows_.at(row.id)->focusable();
        if (!widgets.empty()) return widgets.front()->setFocus(Qt::TabFocusReason);
    }
}

void MenuPanelView::layOut() {
    const double scale = Drawing::uiScale();
    const auto toUnits = [scale](double points) {
        return static_cast<int>(std::lround(points * scale));
    };
    const int top = toUnits(content_.header.height());
    const int bottom = toUnits(content_.footer.height());
    header_->setGeometry(0, 0, width(), top);
    footer_->setGeometry(0, height() - bottom, width(), bottom);
    scroller_->setGeometry(0, top, width(), height() - top - bottom);
    // Rows with the full width of the panel would extend under the scroll bar and could be scrolled
    // sideways. The scroll area lays out its own parts only when it is shown.
    const bool scrolls = toUnits(content_.bodyHeight()) > scroller_->height();
    const int rowWidth =
        width() - (scrolls ? scroller_->verticalScrollBar()->sizeHint().width() : 0);
    double y = 0;
    for (const auto& row : content_.rows) {
        const int from = toUnits(y);
        y += row.height();
        rows_.at(row.id)->setGeometry(0, from, rowWidth, toUnits(y) - from);
    }
    body_->resize(rowWidth, toUnits(y));
}

void MenuPanelView::resizeEvent(QResizeEvent*) {
    layOut();
}

void MenuPanelView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(outline(), Drawing::color({Palette::lockCard}));
    const double line = Drawing::uiScale();
    const double radius = MenuPanelContent::cornerRadius * line - line / 2;
    painter.setPen(QPen(Drawing::color({Palette::lockInk, 0.14}), line));
    painter.drawRoundedRect(QRectF(rect()).adjusted(line / 2, line / 2, -line / 2, -line / 2),
                            radius, radius);
    if (scroller_->verticalScrollBar()->value() == 0) return;
    painter.fillRect(QRectF(0, header_->height() - line, width(), line),
                     Drawing::color({Palette::lockInk, 0.14}));
}

}  // namespace OrvelUI
