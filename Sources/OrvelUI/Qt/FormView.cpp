#include "OrvelUI/Qt/FormView.h"

#include <QPainter>
#include <QScrollBar>
#include <algorithm>

#include "OrvelUI/Qt/FormAccessibility.h"
#include "OrvelUI/Qt/ThinScrollBar.h"

namespace OrvelUI {

using Drawing::units;

namespace {

// In points.
constexpr double sectionGap = 20;
constexpr double titleGap = 7;
constexpr double cardRadius = 10;
constexpr double plainRowGap = 10;
constexpr double rowInset = 14;

// The scroll bar is within the right margin, so that nothing moves when it appears.
int barWidth(const QScrollArea& view) {
    return view.verticalScrollBar()->sizeHint().width();
}

int heightAt(const QWidget* widget, int width) {
    return widget->isHidden() ? 0 : widget->heightForWidth(width);
}

std::string key(const FormRow& row) {
    return std::to_string(row.control.index()) + (row.icon ? "i" : "-") + row.id;
}

}  // namespace

/// A title, the rows on their card, and the notes below.
class FormView::Section final : public QWidget {
  public:
    Section(FormSection::Style style, QWidget* parent)
        : QWidget(parent),
          isCard_(style == FormSection::Style::card),
          title_(new FormLabel(this)),
          intro_(new FormLabel(this)) {
        installFormAccessibility();
    }

    void setContent(const FormSection& section, const FormStyle& style) {
        style_ = style;
        title_->setContent({.text = section.title, .role = TextRole::sectionTitle}, style.colors);
        intro_->setContent({.text = section.intro, .role = TextRole::note}, style.colors);
        setAccessibleName(shownText(section.title));
        setRows(section.rows);
        while (notes_.size() > section.notes.size()) {
            delete notes_.back();
            notes_.pop_back();
        }
        while (notes_.size() < section.notes.size()) notes_.push_back(new NoteWidget(this));
        for (std::size_t i = 0; i < notes_.size(); ++i)
            notes_[i]->setContent(section.notes[i], style);
        arrange(width(), true);
        update();
    }

    int heightForWidth(int width) const override { return arrange(width, false); }
    const std::vector<FormRowWidget*>& rows() const { return rows_; }

  protected:
    void resizeEvent(QResizeEvent*) override { arrange(width(), true); }

    void paintEvent(QPaintEvent*) override {
        if (!isCard_ || rows_.empty()) return;
        PointPainter painter(this);
        const double scale = Drawing::uiScale();
        const auto& colors = style_.colors;
        const QRectF card(0, cardTop_ / scale, painter.rect().width(),
                          (cardBottom_ - cardTop_) / scale);
        painter.face(card, cardRadius, {{colors.surface()}, colors.hairline(), {}});
        for (const auto* row : rows_) {
            if (row == rows_.front()) continue;
            const QRectF line =
                Drawing::snapped(painter, {rowInset, row->y() / scale, card.width() - rowInset, 1});
            painter.fillRect(QRectF(line.topLeft(), QSizeF(line.width(), 1 / scale)),
                             Drawing::color(colors.hairline()));
        }
    }

  private:
    void setRows(const std::vector<FormRow>& contents) {
        std::map<std::string, FormRowWidget*> old;
        for (auto* row : rows_) old.emplace(key(row->content()), row);
        rows_.clear();
        for (const auto& content : contents) {
            auto& row = old[key(content)];
            if (row == nullptr) {
                row = new FormRowWidget(content, !isCard_, this);
                row->show();
            }
            row->setContent(content, style_);
            rows_.push_back(row);
            old.erase(key(content));
        }
        for (const auto& [id, row] : old) {
            row->hide();
            row->deleteLater();  // deferred, because the row may be handling its own press
        }
    }

    int arrange(int width, bool place) const {
        int y = 0;
        for (auto* label : {title_, intro_}) {
            const int height = heightAt(label, width);
            if (height == 0) continue;
            if (place) label->setGeometry(0, y, width, height);
            y += height + units(titleGap);
        }
        if (place) cardTop_ = y;
        for (auto* row : rows_) {
            if (!isCard_ && row != rows_.front()) y += units(plainRowGap);
            const int height = row->heightForWidth(width);
            if (place) row->setGeometry(0, y, width, height);
            y += height;
        }
        if (place) cardBottom_ = y;
        const int noteInset = isCard_ ? units(rowInset) : 0;
        for (auto* note : notes_) {
            const int height = heightAt(note, width - 2 * noteInset);
            y += units(titleGap);
            if (place) note->setGeometry(noteInset, y, width - 2 * noteInset, height);
            y += height;
        }
        return y;
    }

    bool isCard_;
    FormStyle style_;
    FormLabel* title_;
    FormLabel* intro_;
    std::vector<FormRowWidget*> rows_;
    std::vector<NoteWidget*> notes_;
    mutable int cardTop_ = 0;
    mutable int cardBottom_ = 0;
};

/// The sections in a column, under the form's title.
class FormView::Column final : public QWidget {
  public:
    explicit Column(QWidget* parent) : QWidget(parent), title_(new FormLabel(this)) {
        QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
        policy.setHeightForWidth(true);
        setSizePolicy(policy);
    }

    void setContent(const FormContent& content, const FormStyle& style) {
        title_->setContent({.text = content.title, .role = TextRole::paneTitle}, style.colors);
        std::map<std::string, Section*> old = std::move(sections_);
        sections_.clear();
        order_.clear();
        for (const auto& section : content.sections) {
            auto& widget = sections_[section.id];
            if (const auto found = old.find(section.id); found != old.end()) {
                widget = found->second;
                old.erase(found);
            } else {
                widget = new Section(section.style, this);
                widget->show();
            }
            widget->setContent(section, style);
            order_.push_back(widget);
        }
        for (const auto& [id, section] : old) {
            section->hide();
            section->deleteLater();
        }
        settleTabOrder();
        arrange(width(), true);
        updateGeometry();
    }

    /// `bar`: the width of the scroll bar to the right of the column, in Qt units.
    void setMargins(double sides, double top, double bottom, int bar) {
        left_ = units(sides);
        right_ = left_ - bar;
        top_ = units(top);
        bottom_ = units(bottom);
    }
    void setCentred(bool centred) { centred_ = centred; }

    int heightForWidth(int width) const override { return arrange(width, false); }
    QSize sizeHint() const override { return {width(), arrange(width(), false)}; }
    const std::vector<Section*>& sections() const { return order_; }

  protected:
    void resizeEvent(QResizeEvent*) override { arrange(width(), true); }

  private:
    // Widgets are not created in the order in which they are shown.
    void settleTabOrder() {
        QWidget* last = nullptr;
        const auto append = [&](QWidget* root) {
            for (auto* child : root->findChildren<QWidget*>()) {
                if (child->focusPolicy() == Qt::NoFocus && !child->inherits("QAbstractButton"))
                    continue;
                if (last != nullptr) setTabOrder(last, child);
                last = child;
            }
        };
        for (const auto* section : order_)
            for (auto* row : section->rows()) append(row);
    }

    int arrange(int width, bool place) const {
        const int inner = width - left_ - right_;
        int y = top_;
        if (place && centred_) y += std::max(0, (height() - arrange(width, false)) / 2);
        if (!title_->isHidden()) {
            const int height = title_->heightForWidth(inner);
            if (place) title_->setGeometry(left_, y, inner, height);
            y += height + units(14);
        }
        for (auto* section : order_) {
            if (section != order_.front()) y += units(sectionGap);
            const int height = section->heightForWidth(inner);
            if (place) section->setGeometry(left_, y, inner, height);
            y += height;
        }
        return y + bottom_;
    }

    FormLabel* title_;
    std::map<std::string, Section*> sections_;
    std::vector<Section*> order_;
    bool centred_ = false;
    int left_ = 0;
    int right_ = 0;
    int top_ = 0;
    int bottom_ = 0;
};

FormView::FormView(QWidget* parent) : QScrollArea(parent), column_(new Column(this)) {
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBar(new ThinScrollBar(this));
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setMargins(24, 22, 24);
    setFocusPolicy(Qt::NoFocus);
    setWidgetResizable(true);
    setWidget(column_);
    viewport()->setAutoFillBackground(false);
    column_->setAutoFillBackground(false);
}

void FormView::setMargins(double sides, double top, double bottom) {
    column_->setMargins(sides, top, bottom, barWidth(*this));
}

int FormView::heightForWidth(int width) const {
    return column_->heightForWidth(width - barWidth(*this));
}

std::vector<FormRowWidget*> FormView::rows() const {
    std::vector<FormRowWidget*> all;
    for (const auto* section : column_->sections())
        all.insert(all.end(), section->rows().begin(), section->rows().end());
    return all;
}

int FormView::focusedRow() const {
    const auto all = rows();
    for (std::size_t i = 0; i < all.size(); ++i)
        if (all[i]->isAncestorOf(focusWidget())) return static_cast<int>(i);
    return -1;
}

void FormView::setContent(const FormContent& content, const FormStyle& style) {
    static_cast<ThinScrollBar*>(verticalScrollBar())->setContent(style);
    const int focused = window()->focusWidget() != nullptr ? focusedRow() : -1;
    column_->setCentred(centred_);
    column_->setContent(content, style);
    content_ = content;
    style_ = style;
    // When the row with the focus is removed, the next row gets the focus.
    const auto all = rows();
    if (focused >= 0 && focusedRow() < 0 && !all.empty()) {
        const auto next = std::min<std::size_t>(static_cast<std::size_t>(focused), all.size() - 1);
        for (auto* child : all[next]->findChildren<QWidget*>())
            if (child->isVisible() && child->focusPolicy() & Qt::TabFocus)
                return child->setFocus(Qt::OtherFocusReason);
    }
}

}  // namespace OrvelUI
