#include "OrvelUI/Qt/FormChoices.h"

#include <QFontMetricsF>

#include "OrvelUI/Qt/ControlDrawing.h"
#include "OrvelUI/Qt/SceneDrawing.h"

namespace OrvelUI {

using Drawing::units;

namespace {

using Weight = LabelContent::Weight;

// In points.
constexpr double chipHeight = 25;
constexpr double chipPadding = 10;
constexpr double chipRadius = 7;
constexpr double pictureRadius = 8;
constexpr double thumbnailWidth = 140;
constexpr double captionHeight = 40;  // with one line of detail
constexpr double detailHeight = 14;   // of each further line
constexpr double tileHeight = 46;
constexpr double tileRadius = 10;

}  // namespace

LabelContent ChipWidget::label() const {
    return {.text = chip_.title,
            .tail = {},
            .size = 12,
            .weight = Weight::medium,
            .ink = style_.colors.chip(chip_.chosen).text};
}

void ChipWidget::setContent(const ChoiceStrip::Chip& chip, const FormStyle& style) {
    setOption(shownText(chip.title), {}, chip.chosen, chip.choose);
    if (chip == chip_ && style == style_) return;
    chip_ = chip;
    style_ = style;
    updateGeometry();
    update();
}

QSize ChipWidget::sizeHint() const {
    const auto content = label();
    const QFontMetricsF metrics(Drawing::font(content.size, content.weight));
    const double width = metrics.horizontalAdvance(Drawing::text(content)) + 2 * chipPadding;
    return Drawing::scaled({0, 0, width + 1, chipHeight}).size();
}

void ChipWidget::paintEvent(QPaintEvent*) {
    PointPainter painter(this);
    const QRectF rect = painter.rect();
    painter.face(rect, chipRadius, style_.colors.chip(chip_.chosen));
    if (highlight() > 0 && !chip_.chosen) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(Drawing::color(style_.colors.highlight(isDown())));
        painter.drawRoundedRect(rect, chipRadius, chipRadius);
    }
    Drawing::label(painter, label(), rect, Qt::AlignHCenter);
    // A ring in the chip's own colour would not be visible on a chosen chip.
    const auto ring = chip_.chosen ? label().ink : style_.colors.focusRing();
    if (hasFocus()) Drawing::focusRing(painter, rect.adjusted(1.5, 1.5, -1.5, -1.5), 6, ring);
}

ChoiceStripWidget::ChoiceStripWidget(QWidget* parent) : OptionsWidget({.gap = units(5)}, parent) {}

void ChoiceStripWidget::setContent(const FormRow& row, const FormStyle& style) {
    setAccessibleName(shownText(row.label.text));
    setOptions(std::get<ChoiceStrip>(row.control).chips, style);
}

void ThumbnailWidget::setContent(const StyleThumbnails::StyleThumbnail& thumbnail,
                                 const FormStyle& style) {
    setOption(shownText(thumbnail.title), shownText(thumbnail.detail), thumbnail.chosen,
              thumbnail.choose);
    if (thumbnail == thumbnail_ && style == style_) return;
    thumbnail_ = thumbnail;
    style_ = style;
    update();
}

std::vector<LabelContent> ThumbnailWidget::detail() const {
    return Drawing::lines({.text = thumbnail_.detail,
                           .tail = {},
                           .size = 11,
                           .ink = style_.colors.text(TextRole::note)},
                          thumbnailWidth);
}

QSize ThumbnailWidget::sizeHint() const {
    const double more = static_cast<double>(detail().size() - 1) * detailHeight;
    return Drawing::scaled({0, 0, thumbnailWidth, thumbnailWidth * 0.625 + captionHeight + more})
        .size();
}

void ThumbnailWidget::paintEvent(QPaintEvent*) {
    PointPainter painter(this);
    const auto& colors = style_.colors;
    const QRectF all = painter.rect();
    // All in a line are as high as the highest, and their pictures have the same height.
    const double below = thumbnailWidth * 0.625;
    const QRectF picture(all.left() + 3, all.top() + 3, all.width() - 6, below - 6);
    Drawing::lockedScene(painter, picture, pictureRadius,
                         {.look = thumbnail_.look, .card = 1, .showsClock = thumbnail_.showsClock});
    if (thumbnail_.chosen) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(Drawing::color(colors.accent()), 2.5));
        painter.drawRoundedRect(picture.adjusted(-1.75, -1.75, 1.75, 1.75), pictureRadius + 1.75,
                                pictureRadius + 1.75);
    } else {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(
            Drawing::color(highlight() > 0 ? colors.text(TextRole::note) : colors.hairline()), 1));
        painter.drawRoundedRect(picture.adjusted(0.5, 0.5, -0.5, -0.5), pictureRadius,
                                pictureRadius);
    }
    const LabelContent title{.text = thumbnail_.title,
                             .tail = {},
                             .size = 13,
                             .weight = thumbnail_.chosen ? Weight::semibold : Weight::medium,
                             .ink = colors.text(TextRole::label)};
    Drawing::label(painter, title, {all.left(), all.top() + below + 4, all.width(), 18},
                   Qt::AlignHCenter);
    QRectF line(all.left(), all.top() + below + 21, all.width(), 16);
    for (const auto& text : detail()) {
        Drawing::label(painter, text, line, Qt::AlignHCenter);
        line.translate(0, detailHeight);
    }
    if (hasFocus()) Drawing::focusRing(painter, all, pictureRadius + 3, colors.focusRing());
}

StyleThumbnailsWidget::StyleThumbnailsWidget(QWidget* parent)
    : OptionsWidget({.gap = units(8), .columns = 3}, parent) {}

void StyleThumbnailsWidget::setContent(const FormRow& row, const FormStyle& style) {
    setOptions(std::get<StyleThumbnails>(row.control).styles, style);
}

void AppTileWidget::setContent(const AppChoiceTiles::AppChoiceTile& tile, const FormStyle& style) {
    setOption(QString::fromStdString(tile.app.name), shownText(tile.hint), tile.chosen,
              tile.toggle);
    setToolTip(QString::fromStdString(tile.app.name));
    if (tile == tile_ && style == style_) return;
    tile_ = tile;
    style_ = style;
    update();
}

QSize AppTileWidget::sizeHint() const {
    return Drawing::scaled({0, 0, 170, tileHeight}).size();
}

void AppTileWidget::paintEvent(QPaintEvent*) {
    PointPainter painter(this);
    const auto& colors = style_.colors;
    const QRectF rect = painter.rect();
    painter.face(rect, tileRadius, colors.tile(tile_.chosen));
    if (highlight() > 0) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(Drawing::color(colors.highlight(isDown())));
        painter.drawRoundedRect(rect, tileRadius, tileRadius);
    }
    const double middle = rect.center().y();
    Drawing::appIcon(painter, tile_.app.icon, {rect.left() + 10, middle - 13, 26, 26}, colors);
    const LabelContent name{.text = tile_.app.name,
                            .tail = {},
                            .size = 13,
                            .weight = Weight::medium,
                            .ink = colors.tile(tile_.chosen).text,
                            .verbatim = true};
    Drawing::label(painter, name,
                   {rect.left() + 46, rect.top(), rect.width() - 46 - 36, rect.height()});
    Drawing::symbol(painter,
                    {.name = tile_.chosen ? "checkmark.circle.fill" : "circle",
                     .size = 18,
                     .ink = tile_.chosen ? colors.accent() : colors.text(TextRole::note)},
                    {rect.right() - 20, middle});
    if (hasFocus()) Drawing::focusRing(painter, rect, tileRadius, colors.focusRing());
}

AppChoiceTilesWidget::AppChoiceTilesWidget(QWidget* parent)
    : OptionsWidget({.gap = units(8), .columns = 2}, parent) {}

void AppChoiceTilesWidget::setContent(const FormRow& row, const FormStyle& style) {
    setAccessibleName(shownText(row.label.text));
    setOptions(std::get<AppChoiceTiles>(row.control).tiles, style);
}

}  // namespace OrvelUI
