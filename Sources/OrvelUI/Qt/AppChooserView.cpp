#include "OrvelUI/Qt/AppChooserView.h"

#include <QAbstractListModel>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyledItemDelegate>
#include <map>
#include <utility>

#include "OrvelUI/Qt/ControlDrawing.h"
#include "OrvelUI/Qt/SceneDrawing.h"
#include "OrvelUI/Qt/ThinScrollBar.h"

namespace OrvelUI {

using Drawing::units;

namespace {

// In points.
constexpr double viewWidth = 420;
constexpr double viewHeight = 480;
constexpr double padding = 18;
constexpr double rowHeight = 40;
constexpr double fieldHeight = 30;

}  // namespace

/// The rows for Qt's list view and for assistive programs.
class AppChooserView::Rows final : public QAbstractListModel {
  public:
    explicit Rows(AppChooserModel& model) : model_(model), matches_(model.matches()) {}

    void update() {
        auto matches = model_.matches();
        if (matches != matches_) {
            beginResetModel();
            matches_ = std::move(matches);
            endResetModel();
        }
        if (!matches_.empty()) emit dataChanged(index(0), index(rowCount({}) - 1));
    }
    const AppChooserModel::App& app(int row) const {
        return matches_[static_cast<std::size_t>(row)];
    }
    bool isChosen(int row) const { return model_.chosen.get().contains(app(row).bundleID); }
    std::shared_ptr<const OrvelSystem::Picture> icon(int row) const {
        const auto& id = app(row).bundleID;
        auto found = icons_.find(id);
        if (found == icons_.end()) found = icons_.emplace(id, model_.icon(id)).first;
        return found->second;
    }
    void toggle(int row) { model_.toggle(app(row).bundleID); }

    int rowCount(const QModelIndex& parent) const override {
        return parent.isValid() ? 0 : static_cast<int>(matches_.size());
    }
    QVariant data(const QModelIndex& index, int role) const override {
        if (!index.isValid() || index.row() >= rowCount({})) return {};
        if (role == Qt::DisplayRole) return QString::fromStdString(app(index.row()).name);
        if (role == Qt::CheckStateRole) return isChosen(index.row()) ? Qt::Checked : Qt::Unchecked;
        return {};
    }
    Qt::ItemFlags flags(const QModelIndex&) const override {
        return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable;
    }

  private:
    AppChooserModel& model_;
    std::vector<AppChooserModel::App> matches_;
    mutable std::map<std::string, std::shared_ptr<const OrvelSystem::Picture>> icons_;
};

class AppChooserView::Delegate final : public QStyledItemDelegate {
  public:
    explicit Delegate(const Rows& rows) : rows_(rows) {}

    void setStyle(const FormStyle& style) { style_ = style; }

    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override {
        return Drawing::scaled({0, 0, 200, rowHeight}).size();
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setRenderHint(QPainter::SmoothPixmapTransform);
        painter->translate(option.rect.topLeft());
        const double scale = Drawing::uiScale();
        painter->scale(scale, scale);
        const QRectF rect(0, 0, option.rect.width() / scale, option.rect.height() / scale);
        const auto& colors = style_.colors;
        const QRectF field = rect.adjusted(4, 1, -4, -1);
        if (option.state.testFlag(QStyle::State_MouseOver)) {
            painter->setPen(Qt::NoPen);
            painter->setBrush(Drawing::color(colors.highlight(false)));
            painter->drawRoundedRect(field, 8, 8);
        }
        const double middle = rect.center().y();
        Drawing::appIcon(*painter, rows_.icon(index.row()), {14, middle - 13, 26, 26}, colors);
        Drawing::label(*painter,
                       {.text = rows_.app(index.row()).name,
                        .tail = {},
                        .size = 13,
                        .ink = colors.text(TextRole::label),
                        .verbatim = true},
                       {52, 0, rect.width() - 52 - 44, rect.height()});
        const bool chosen = rows_.isChosen(index.row());
        Drawing::symbol(*painter,
                        {.name = chosen ? "checkmark.circle.fill" : "circle",
                         .size = 18,
                         .ink = chosen ? colors.accent() : colors.text(TextRole::note)},
                        {rect.right() - 26, middle});
        if (option.state.testFlag(QStyle::State_HasFocus))
            Drawing::focusRing(*painter, field, 8, colors.focusRing());
        painter->restore();
    }

  private:
    const Rows& rows_;
    FormStyle style_;
};

class AppChooserView::List final : public QListView {
  public:
    List(Rows& rows, QWidget* parent) : QListView(parent), rows_(rows) {
        setModel(&rows);
        setUniformItemSizes(true);
        setFrameShape(QFrame::NoFrame);
        setMouseTracking(true);
        setVerticalScrollBar(new ThinScrollBar(this));
        setVerticalScrollMode(ScrollPerPixel);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setEditTriggers(NoEditTriggers);
        setAccessibleName(shownText(AppChooserModel::title));
        QPalette clear = palette();
        clear.setColor(QPalette::Base, Qt::transparent);
        setPalette(clear);
        viewport()->setAutoFillBackground(false);
    }

  protected:
    void mouseReleaseEvent(QMouseEvent* event) override {
        QListView::mouseReleaseEvent(event);
        const auto index = indexAt(event->position().toPoint());
        if (event->button() == Qt::LeftButton && index.isValid()) rows_.toggle(index.row());
    }
    void keyPressEvent(QKeyEvent* event) override {
        const bool presses = event->key() == Qt::Key_Space || event->key() == Qt::Key_Return ||
                             event->key() == Qt::Key_Enter;
        if (!presses) return QListView::keyPressEvent(event);
        if (currentIndex().isValid()) rows_.toggle(currentIndex().row());
    }

  private:
    Rows& rows_;
};

AppChooserView::AppChooserView(std::unique_ptr<AppChooserModel> model, Done done)
    : model_(std::move(model)),
      done_(std::move(done)),
      search_(new TextFieldWidget(this)),
      rows_(new Rows(*model_)),
      delegate_(new Delegate(*rows_)),
      list_(new List(*rows_, this)),
      nothing_(new FormLabel(this)),
      cancel_(new FormButtonWidget(this)),
      add_(new FormButtonWidget(this)) {
    rows_->setParent(this);
    delegate_->setParent(this);
    list_->setItemDelegate(delegate_);
    std::vector<OrvelCore::Subscription> observations;
    observations.push_back(model_->query.observe([this](const auto&) { scheduleRefresh(); }));
    observations.push_back(model_->chosen.observe([this](const auto&) { scheduleRefresh(); }));
    follow(std::move(observations));
    refresh();
    search_->findChild<QLineEdit*>()->setFocus();
}

AppChooserView::~AppChooserView() {
    // Qt's list uses the rows until it is destroyed, and the rows use the model.
    delete list_;
    delete delegate_;
    delete rows_;
}

void AppChooserView::showModel(const FormStyle& now) {
    search_->setContent({.id = "search",
                         .label = {.text = AppChooserModel::prompt},
                         .control = TextField{.text = model_->query.get(),
                                              .prompt = AppChooserModel::prompt,
                                              .type =
                                                  [this](const std::string& typed) {
                                                      model_->query.set(typed);
                                                      return typed;
                                                  }}},
                        now);
    delegate_->setStyle(now);
    static_cast<ThinScrollBar*>(list_->verticalScrollBar())->setContent(now);
    rows_->update();
    const bool isEmpty = rows_->rowCount({}) == 0;
    nothing_->setContent(
        {.text = isEmpty ? AppChooserModel::nothingFound : "", .role = TextRole::note}, now.colors);
    cancel_->setContent({.title = "Cancel", .press = [this] { finish(false); }}, now);
    add_->setContent({.title = "Add",
                      .kind = FormButton::Kind::prominent,
                      .enabled = !model_->chosen.get().empty(),
                      .press = [this] { finish(true); }},
                     now);
}

void AppChooserView::finish(bool adds) {
    const auto done = std::exchange(done_, nullptr);
    if (done) done(adds ? model_->result() : std::vector<std::string>());
}

void AppChooserView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) return finish(false);
    WindowView::keyPressEvent(event);
}

QSize AppChooserView::sizeHint() const {
    return Drawing::scaled({0, 0, viewWidth, viewHeight}).size();
}

void AppChooserView::resizeEvent(QResizeEvent*) {
    const int side = units(padding);
    search_->setGeometry(side, side, width() - 2 * side, units(fieldHeight));
    const int top = search_->geometry().bottom() + units(10);
    const int buttonTop = height() - side - units(FormButtonWidget::height);
    list_->setGeometry(side, top, width() - 2 * side, buttonTop - units(14) - top);
    nothing_->setGeometry(side + units(14), top + units(12), width() - 2 * side - units(28),
                          units(20));
    int right = width() - side;
    for (auto* button : {add_, cancel_}) {
        const QSize size = button->sizeHint();
        button->setGeometry(right - size.width(), buttonTop, size.width(), size.height());
        right = button->x() - units(8);
    }
}

void AppChooserView::paintEvent(QPaintEvent*) {
    PointPainter painter(this);
    const auto colors = style().colors;
    painter.fillRect(painter.rect(), Drawing::color({.value = colors.canvas()}));
    const double scale = Drawing::uiScale();
    const QRect list = list_->geometry();
    painter.face({list.x() / scale, list.y() / scale, list.width() / scale, list.height() / scale},
                 10, {{colors.surface()}, colors.hairline(), {}});
}

}  // namespace OrvelUI
