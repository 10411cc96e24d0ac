#include <QAbstractButton>
#include <QAbstractEventDispatcher>
#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMouseEvent>

#include "OrvelUI/Qt/AppLockBadgeWidget.h"
#include "OrvelUI/Qt/IslandPasswordField.h"
#include "OrvelUI/Qt/LockViews.h"
#include "OrvelUITests/Cards.h"

#include "Support/MainLoopChecks.h"

namespace {

class QtEnvironment final : public testing::Environment {
  public:
    void SetUp() override {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        app_ = std::make_unique<QApplication>(argc_, argv_);
        QAccessible::setActive(true);
        app_->setCursorFlashTime(0);
    }
    void TearDown() override { app_.reset(); }

  private:
    int argc_ = 1;
    char name_[9] = "UITests";
    char* argv_[2] = {name_, nullptr};
    std::unique_ptr<QApplication> app_;
};

[[maybe_unused]] testing::Environment* const environment =
    testing::AddGlobalTestEnvironment(new QtEnvironment);

template <class Widget>
Widget* find(QWidget& root) {
    for (auto* child : root.findChildren<QWidget*>())
        if (auto* found = dynamic_cast<Widget*>(child)) return found;
    return nullptr;
}

void press(QWidget& widget, int key, const QString& text = {},
           Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QKeyEvent down(QEvent::KeyPress, key, modifiers, text);
    QCoreApplication::sendEvent(&widget, &down);
}

void type(QWidget& widget, const QString& text) {
    for (const QChar character : text) press(widget, 0, QString(character));
}

void click(QWidget& widget, QPoint at) {
    for (const auto kind : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        QMouseEvent event(kind, at, widget.mapToGlobal(at), Qt::LeftButton,
                          kind == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(&widget, &event);
    }
}

/// The number of timers of `root` and all its descendants.
qsizetype timerCount(QObject& root) {
    auto* dispatcher = QAbstractEventDispatcher::instance();
    auto count = dispatcher->registeredTimers(&root).size();
    for (auto* child : root.findChildren<QObject*>())
        count += dispatcher->registeredTimers(child).size();
    return count;
}

QImage picture(QWidget& view) {
    return view.grab().toImage();
}

struct ShownCard : Card {
    explicit ShownCard(bool reduceMotion = true, bool touchID = true)
        : Card(touchID), view(makeLockScreenContent(model, {}, reduceMotion)) {
        view->show();
        QCoreApplication::processEvents();
    }
    std::string typed() const { return std::string(model.password.get().view()); }

    std::unique_ptr<OverlayView> view;
    IslandPasswordField& field = *find<IslandPasswordField>(*view);
};

}  // namespace

TEST(PasswordField, TypesIntoTheModelAndSubmits) {
    ShownCard card;
    type(card.field, "sécret");
    EXPECT_EQ(card.typed(), "sécret");
    press(card.field, Qt::Key_Return, "\r");
    EXPECT_THAT(card.submitted, ElementsAre("sécret"));
    EXPECT_EQ(card.typedAtSubmit, "");
    EXPECT_EQ(card.typed(), "");
    press(card.field, Qt::Key_Enter, "\r");
    EXPECT_EQ(card.submitted.size(), 1U);

    QInputMethodEvent composing("^", {});
    QCoreApplication::sendEvent(&card.field, &composing);
    EXPECT_EQ(card.typed(), "") << "what is still being composed is not typed yet";
    QInputMethodEvent committed;
    committed.setCommitString("ê\U0001F511");
    QCoreApplication::sendEvent(&card.field, &committed);
    EXPECT_EQ(card.typed(), "ê\U0001F511");
}

TEST(PasswordField, KeysThatErase) {
    struct Row {
        int key;
        Qt::KeyboardModifiers modifiers;
        std::string left;
    };
    const std::string typed = "ab\U0001F469\u200D\U0001F4BB";
    for (const auto& row :
         {Row{Qt::Key_Backspace, Qt::NoModifier, "ab"},
          Row{Qt::Key_Backspace, Qt::ControlModifier, ""}, Row{Qt::Key_U, Qt::ControlModifier, ""},
          Row{Qt::Key_Escape, Qt::NoModifier, ""}, Row{Qt::Key_Delete, Qt::NoModifier, typed}}) {
        ShownCard card;
        card.model.type(typed);
        press(card.field, row.key, {}, row.modifiers);
        EXPECT_EQ(card.typed(), row.left) << row.key;
    }
    for (const int key : {Qt::Key_Backspace, Qt::Key_Delete, Qt::Key_X}) {
        ShownCard card;
        card.model.type(typed);
        press(card.field, Qt::Key_A, "\x01", Qt::ControlModifier);
        EXPECT_EQ(card.typed(), typed);
        press(card.field, key, key == Qt::Key_X ? "x" : "");
        EXPECT_EQ(card.typed(), key == Qt::Key_X ? "x" : "");
    }
}

TEST(PasswordField, OnlyTextIsTyped) {
    ShownCard card;
    QGuiApplication::clipboard()->setText("pasted");
    press(card.field, Qt::Key_V, "\x16", Qt::ControlModifier);
    press(card.field, Qt::Key_Insert, {}, Qt::ShiftModifier);
    press(card.field, Qt::Key_Tab, "\t");
    press(card.field, Qt::Key_F5);
    press(card.field, Qt::Key_Left);
    press(card.field, Qt::Key_X, "x", Qt::AltModifier);
    press(card.field, Qt::Key_X, "x", Qt::MetaModifier);
    EXPECT_EQ(card.typed(), "");
    press(card.field, Qt::Key_At, "@", Qt::GroupSwitchModifier);
    press(card.field, Qt::Key_A, "A", Qt::ShiftModifier);
    press(card.field, Qt::Key_Space, " ");
    EXPECT_EQ(card.typed(), "@A ");
    press(card.field, Qt::Key_A, "\x01", Qt::ControlModifier);
    press(card.field, Qt::Key_C, "\x03", Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "pasted");
}

TEST(PasswordField, ArrowSubmitsWhatIsTyped) {
    ShownCard card;
    auto* arrow = find<QAbstractButton>(card.field);
    EXPECT_FALSE(arrow->isEnabled());
    EXPECT_EQ(arrow->accessibleName(), "Unlock");
    type(card.field, "pw");
    click(*arrow, arrow->rect().center());
    EXPECT_THAT(card.submitted, ElementsAre("pw"));
    EXPECT_FALSE(arrow->isEnabled());
}

TEST(PasswordField, TellsAssistiveProgramsItsLengthAndNothingMore) {
    ShownCard card;
    type(card.field, "geheim");
    auto* field = QAccessible::queryAccessibleInterface(&card.field);
    ASSERT_NE(field, nullptr);
    EXPECT_EQ(field->role(), QAccessible::EditableText);
    EXPECT_TRUE(field->state().passwordEdit);
    EXPECT_EQ(field->text(QAccessible::Name), "Account password");
    EXPECT_EQ(field->text(QAccessible::Description),
              "Type your account password, then press Return.");
    EXPECT_EQ(field->text(QAccessible::Value), QString(6, u'•'));
    EXPECT_EQ(field->textInterface()->text(0, 6), QString(6, u'•'));
    auto* view = QAccessible::queryAccessibleInterface(card.view.get());
    EXPECT_EQ(view->role(), QAccessible::Grouping);
    EXPECT_EQ(view->text(QAccessible::Name),
              "Screen locked by Karvo. Use your fingerprint, or type your account password.");
}

TEST(LockIsland, TakesTheFocusWhenTypingBecomesPossible) {
    ShownCard card;
    EXPECT_EQ(card.view->focusWidget(), &card.field);
    card.field.clearFocus();
    card.model.status.set(LockCardModel::Verifying{});
    EXPECT_NE(card.view->focusWidget(), &card.field);
    card.model.status.set(LockCardModel::WrongPassword{});
    EXPECT_EQ(card.view->focusWidget(), &card.field);
    card.field.clearFocus();
    click(*card.view, {card.view->width() / 2, 10});
    EXPECT_EQ(card.view->focusWidget(), &card.field);
}

TEST(LockIsland, RunsATimerOnlyWhileSomethingMoves) {
    ShownCard still;
    still.model.registerFailure();
    EXPECT_EQ(timerCount(*still.view), 0) << "reduced motion";
    still.model.status.set(LockCardModel::Verifying{});
    EXPECT_EQ(timerCount(*still.view), 1) << "the spinner";
    still.view->hide();
    EXPECT_EQ(timerCount(*still.view), 0);
    still.view->show();
    still.model.status.set(cooldownFor(20));
    EXPECT_EQ(timerCount(*still.view), 0) << "the ring follows the card's clock";

    const QImage open = picture(*ShownCard().view);
    ShownCard moving(false);
    EXPECT_EQ(timerCount(*moving.view), 1) << "the opening";
    const auto rests = [&] { return timerCount(*moving.view) == 0; };
    ASSERT_TRUE(eventually([] { QCoreApplication::processEvents(); }, rests));
    EXPECT_EQ(picture(*moving.view), open);
    const QPoint home = moving.field.mapTo(moving.view.get(), QPoint());
    moving.model.registerFailure();
    EXPECT_EQ(timerCount(*moving.view), 1) << "the shake";
    bool moved = false;
    const auto watch = [&] {
        QCoreApplication::processEvents();
        moved |= moving.field.mapTo(moving.view.get(), QPoint()) != home;
    };
    ASSERT_TRUE(eventually(watch, rests));
    EXPECT_TRUE(moved);
    EXPECT_EQ(moving.field.mapTo(moving.view.get(), QPoint()), home);
}

TEST(AppLockBadge, ClosedIsAButtonThatMayBeReplacedWhenClicked) {
    Card card(true, "Signal");
    int taps = 0;
    std::unique_ptr<OverlayView> badge;
    badge = makeAppLockBadge(
        card.model, false, true,
        [&] {
            ++taps;
            badge.reset();
        },
        [] {});
    badge->show();
    EXPECT_EQ(badge->sizeHint().shrunkBy(badge->overhang()), QSize(236, 40));
    EXPECT_EQ(badge->placement({1000, 800}).center(), QRect(0, 0, 1000, 800).center());
    auto* button = QAccessible::queryAccessibleInterface(badge.get());
    EXPECT_EQ(button->role(), QAccessible::Button);
    EXPECT_EQ(button->text(QAccessible::Name),
              "Unlock with your fingerprint or your account password");
    click(*badge, {2, 2});
    QCoreApplication::processEvents();
    EXPECT_EQ(taps, 0) << "the shadow is not the button";
    click(*badge, badge->rect().center());
    QCoreApplication::processEvents();
    EXPECT_EQ(taps, 1);
    EXPECT_EQ(badge, nullptr);
}

TEST(AppLockBadge, OpenTakesThePasswordAndEscapeCancels) {
    Card card(true, "Signal");
    int cancels = 0;
    const auto badge = makeAppLockBadge(
        card.model, true, true, [] { FAIL(); }, [&] { ++cancels; });
    badge->show();
    auto* field = find<IslandPasswordField>(*badge);
    EXPECT_EQ(badge->focusWidget(), field);
    EXPECT_EQ(badge->sizeHint().shrunkBy(badge->overhang()), QSize(300, 112));
    type(*field, "pw");
    press(*field, Qt::Key_Escape);
    QCoreApplication::processEvents();
    EXPECT_EQ(cancels, 1);
    press(*field, Qt::Key_Return);
    EXPECT_THAT(card.submitted, ElementsAre("pw"));
}
