#include <QAccessibleWidget>

#include "OrvelUI/Contrast.h"
#include "OrvelUI/Qt/AlertView.h"
#include "OrvelUI/Qt/FormChoices.h"
#include "OrvelUI/Qt/FormInputs.h"
#include "OrvelUI/Qt/OnboardingView.h"
#include "OrvelUI/Qt/SettingsView.h"

#include "Widgets.h"

using Action = PreferencesModel::Action;

namespace {

constexpr SettingsTheme::Scheme light = SettingsTheme::Scheme::light;
constexpr SettingsTheme::Scheme dark = SettingsTheme::Scheme::dark;
constexpr SettingsTheme themes[] = {{light, SettingsTheme::Contrast::standard},
                                    {dark, SettingsTheme::Contrast::standard},
                                    {light, SettingsTheme::Contrast::increased},
                                    {dark, SettingsTheme::Contrast::increased}};

void settle() {
    for (int i = 0; i < 4; ++i) {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

/// A model that fills every pane, and its visible view.
struct Shown {
    SettingsModel model;
    std::unique_ptr<SettingsView> view;

    Shown() {
        auto& preferences = model.preferences;
        preferences.privateApps.set({{.id = "a", .name = "Signal"}, {.id = "b", .name = "Beta"}});
        preferences.addableApps.set({{.id = "c", .name = "Mac Mail"}});
        preferences.showsAddableApps.set(true);
        preferences.macOSCorners.set({PreferencesModel::Corner::topLeft});
        preferences.pick(PreferencesModel::Corner::topLeft);
        preferences.shortcutNotes.set({{Action::lockMac, "Taken."}});
        preferences.refusedNotes.set({Action::lockMac});
        model.about.updateStatus.set("Ready.");
        model.about.updateReady.set(true);
        view = std::make_unique<SettingsView>(model);
        view->resize(view->sizeHint());
        view->show();
        settle();
    }
    void go(SettingsPane pane) {
        model.pane.set(pane);
        settle();
    }
};

/// The height of a label that is wide enough to need only one line.
int heightOf(const std::string& text) {
    FormLabel label(nullptr);
    label.setContent({.text = text, .verbatim = true}, FormColors{themes[0]});
    return label.heightForWidth(1000);
}

std::vector<QWidget*> tabStops(QWidget& root) {
    std::vector<QWidget*> stops;
    for (auto* next = root.nextInFocusChain(); next != &root; next = next->nextInFocusChain())
        if (root.isAncestorOf(next) && next->isVisibleTo(&root) && next->isEnabled() &&
            (next->focusPolicy() & Qt::TabFocus))
            stops.push_back(next);
    return stops;
}

void pressAndSettle(QWidget* widget, int key) {
    press(*widget, key);
    settle();
}

}  // namespace

TEST(FormColors, EverythingCanBeReadInEveryTheme) {
    using Kind = FormButton::Kind;
    constexpr double text = 4.5;  // WCAG AA
    constexpr double sign = 3;    // WCAG AA for non-text elements
    const auto over = [](const Palette::Ink& ink, Palette::Value background) {
        return Contrast::blend(ink.value, ink.opacity, background);
    };
    for (const auto& theme : themes) {
        const FormColors colors{theme};
        const bool increased = theme.contrast == SettingsTheme::Contrast::increased;
        for (const auto background : {colors.canvas(), colors.surface()}) {
            for (const auto role :
                 {TextRole::paneTitle, TextRole::sectionTitle, TextRole::label, TextRole::note,
                  TextRole::warning, TextRole::heroTitle, TextRole::heroBody})
                EXPECT_GE(Contrast::ratio(over(colors.text(role), background), background), text);
            std::vector<FormColors::Face> faces{colors.chip(true),        colors.chip(false),
                                                colors.sidebarItem(true), colors.field(),
                                                colors.tile(true),        colors.tile(false)};
            for (const auto kind :
                 {Kind::plain, Kind::prominent, Kind::destructive, Kind::link, Kind::symbol})
                for (const bool enabled : {true, false})
                    faces.push_back(colors.button(kind, enabled));
            for (const auto& face : faces) {
                const auto fill = over(face.fill, background);
                EXPECT_GE(Contrast::ratio(over(face.text, fill), fill), text);
            }
            for (const auto& face :
                 {colors.button(Kind::plain, true), colors.button(Kind::prominent, true),
                  colors.chip(false), colors.tile(true)}) {
                const auto lit = over(colors.highlight(true), over(face.fill, background));
                EXPECT_GE(Contrast::ratio(over(face.text, lit), lit), text) << "with the highlight";
            }
            const auto field = over(colors.field().fill, background);
            EXPECT_GE(Contrast::ratio(over(colors.prompt(), field), field), text);
            for (const bool on : {true, false})
                EXPECT_GE(Contrast::ratio(over(colors.track(on).fill, background), background),
                          on ? sign : 2.7);
            EXPECT_GE(Contrast::ratio(over(colors.focusRing(), background), background), sign);
            EXPECT_GE(Contrast::ratio(over(colors.hairline(), background), background),
                      increased ? sign : 1.1);
            const auto caps = Keycaps{.caps = {"L"}}.inks(theme);
            const auto cap = over(caps.fill, background);
            EXPECT_GE(Contrast::ratio(over(caps.text, cap), cap), text);
        }
        const auto side = colors.sidebar();
        EXPECT_GE(Contrast::ratio(colors.sidebarItem(false).text.value, side), text);
        EXPECT_GE(Contrast::ratio(colors.text(TextRole::note).value, side), text);
    }
}

TEST(FormLabel, ShowsTheMarkupOfANameAsItStands) {
    EXPECT_EQ(heightOf("a<br>b"), heightOf("a b"));
}

TEST(SettingsView, IsReachedAndReadOutFromTopToBottom) {
    Shown shown;
    for (const auto pane : allCases<SettingsPane>()) {
        SCOPED_TRACE(std::string(title(pane)));
        shown.go(pane);
        const auto stops = tabStops(*shown.view);
        ASSERT_GT(stops.size(), 2U);
        EXPECT_EQ(stops.front()->accessibleName().toStdString(), title(pane))
            << "the sidebar is one stop, before the pane";
        int last = -1;
        for (auto* stop : stops) {
            EXPECT_FALSE(stop->accessibleName().isEmpty()) << stop->metaObject()->className();
            EXPECT_NE(accessible(stop).role(), QAccessible::Client);
            EXPECT_FALSE(accessible(stop).state().disabled);
            if (stop == stops.front()) continue;
            // Rows of a form do not overlap, so their tops define the order; within a row it is the
            // reading order.
            const int top = stop->mapTo(shown.view.get(), QPoint(0, stop->height() / 2)).y();
            EXPECT_GE(top, last - stop->height()) << stop->accessibleName().toStdString();
            last = top;
        }
    }
}

TEST(SettingsView, TellsRolesAndStates) {
    Shown shown;
    auto& view = *shown.view;
    shown.go(SettingsPane::blur);
    auto* const focus = named<IntensityTrack>(view, "Focus Blur");
    EXPECT_EQ(accessible(focus).role(), QAccessible::Slider);
    pressAndSettle(focus, Qt::Key_Left);
    EXPECT_EQ(shown.model.preferences.prefs.get().focusBlurIntensity, 27);
    EXPECT_EQ(accessible(focus).text(QAccessible::Value), "27, large text may be readable");
    accessible(focus).valueInterface()->setCurrentValue(5000);
    EXPECT_EQ(shown.model.preferences.prefs.get().focusBlurIntensity, 64);
    auto* const corner = named<FormOption>(view, "Top left");
    EXPECT_TRUE(accessible(corner).state().checked);
    accessible(corner).actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    settle();
    EXPECT_FALSE(accessible(corner).state().checked);
    EXPECT_EQ(named<QWidget>(view, "Corner action"), nullptr);

    shown.go(SettingsPane::shortcuts);
    std::vector<std::pair<std::string, Action>> heard;
    auto& model = shown.model.preferences;
    model.onRecord = [&](Action action) { heard.emplace_back("record", action); };
    model.onClearShortcut = [&](Action action) { heard.emplace_back("clear", action); };
    for (const auto* const name : {"Record, Blur Screen", "Clear, Lock computer"})
        pressAndSettle(named<QAbstractButton>(view, name), Qt::Key_Return);
    EXPECT_THAT(heard,
                ElementsAre(Pair("record", Action::quickBlur), Pair("clear", Action::lockMac)));
}

TEST(SettingsView, KeepsTheKeyboardWhereTheUserIs) {
    Shown shown;
    shown.go(SettingsPane::privateApps);
    auto& model = shown.model.preferences;
    model.onRemoveApp = [&](const std::string& id) {
        auto apps = model.privateApps.get();
        std::erase_if(apps, [&](const AppRow& app) { return app.id == id; });
        model.privateApps.set(apps);
    };
    auto* const remove = named<QAbstractButton>(*shown.view, "Remove Signal");
    remove->setFocus();
    pressAndSettle(remove, Qt::Key_Return);
    ASSERT_NE(shown.view->focusWidget(), nullptr);
    EXPECT_EQ(shown.view->focusWidget()->accessibleName(), "Remove Beta");
    // The list changes around the focused row.
    model.privateApps.set({{.id = "z", .name = "Zed"}, {.id = "b", .name = "Beta"}});
    settle();
    EXPECT_EQ(shown.view->focusWidget()->accessibleName(), "Remove Beta");

    std::string added;
    model.onAddApp = [&](const std::string& id) { added = id; };
    auto* const add = named<QAbstractButton>(*shown.view, "Add Mac Mail");
    ASSERT_NE(add, nullptr) << "names of apps are not reworded";
    pressAndSettle(add, Qt::Key_Return);
    EXPECT_EQ(added, "c");
}

TEST(SettingsView, FitsItsTextAtEverySize) {
    Shown shown;
    shown.model.preferences.privateApps.set(
        {{.id = "long", .name = "The Extraordinarily Long Application for Everything at All"}});
    for (const int width : {480, 720, 1400})
        for (const auto pane : allCases<SettingsPane>()) {
            shown.view->resize(width, 520);
            shown.go(pane);
            for (const auto* label : shown.view->findChildren<QLabel*>()) {
                if (!label->isVisibleTo(shown.view.get())) continue;
                EXPECT_GE(label->height(), label->heightForWidth(label->width()))
                    << width << " " << label->text().toStdString();
                const auto* const row = label->parentWidget();
                EXPECT_TRUE(row->rect().contains(label->geometry()))
                    << width << " " << label->text().toStdString();
            }
        }
}

TEST(AlertView, ReturnDestroysNothingAndEscapeGoesBack) {
    for (const auto& [key, answer] : {std::pair(Qt::Key_Return, 1), std::pair(Qt::Key_Escape, 1)}) {
        std::vector<std::size_t> answers;
        AlertView view(Alert::uninstallQuestion(), [&](std::size_t i) { answers.push_back(i); });
        view.resize(view.sizeHint());
        view.show();
        pressAndSettle(view.focusWidget(), key);
        pressAndSettle(view.focusWidget(), key);
        EXPECT_THAT(answers, ElementsAre(answer));
        EXPECT_NE(named<QAbstractButton>(view, "Uninstall"), nullptr);
    }
}
