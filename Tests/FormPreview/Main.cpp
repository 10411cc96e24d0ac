// Draws every pane of Settings and every step of the guide, to be looked at: one picture each in
// light, dark and high contrast.
//
//   QT_QPA_PLATFORM=offscreen [QT_SCALE_FACTOR=1.5] [QT_FONT_DPI=192] FormPreview folder [word]
//
// Only pictures whose name holds the word are drawn.

#include <QApplication>
#include <QDir>
#include <cmath>
#include <cstdio>
#include <functional>

#include "OrvelUI/Linux/OnboardingView.h"
#include "OrvelUI/Linux/SettingsView.h"

namespace {

using namespace OrvelUI;
using OrvelCore::OnboardingStep;
using OrvelCore::Shortcut;
using Action = PreferencesModel::Action;
using Corner = PreferencesModel::Corner;

const OrvelCore::Date now = OrvelCore::dateFromSecondsSince1970(1'795'000'000);

std::shared_ptr<const OrvelSystem::Picture> icon(std::uint32_t color) {
    constexpr int side = 64;
    auto picture = std::make_shared<OrvelSystem::Picture>();
    picture->width = picture->height = side;
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x) {
            const double dx = std::max(0.0, std::abs(x - 31.5) - 18);
            const double dy = std::max(0.0, std::abs(y - 31.5) - 18);
            const bool inside = std::hypot(dx, dy) < 12;
            const bool spot = std::hypot(x - 31.5, y - 31.5) < 11;
            picture->pixels.push_back(!inside ? 0 : spot ? 0xFFFFFFFF : 0xFF000000 | color);
        }
    return picture;
}

std::vector<AppRow> someApps() {
    return {{"signal", "Signal", icon(0x3A76F0)},
            {"mail", "Thunderbird", icon(0x1F6FD0)},
            {"arabic", "برنامج المراسلة", icon(0x2E9E5B)},
            {"org.example.vanished", "org.example.vanished", nullptr},
            {"long", "The Extraordinarily Long Application for Everything and Nothing at All",
             icon(0xC05A2B)}};
}

void fill(SettingsModel& model) {
    model.staticPreview = true;
    auto& preferences = model.preferences;
    preferences.locale.set({"en_GB"});
    preferences.timeZone.set({"Europe/Berlin"});
    preferences.now.set(now);
    preferences.privateApps.set(someApps());
    model.about.version.set("1.4 (212)");
    model.about.updateStatus.set("You're up to date.");
}

struct Picture {
    std::string name;
    std::function<std::unique_ptr<QWidget>(const FormStyle&)> make;
};

/// A view with the model that it shows.
template <class Model, class View>
class Shown final : public QWidget {
  public:
    Shown(const std::function<void(Model&)>& prepare, const FormStyle& style, bool whole) {
        prepare(model_);
        view_ = new View(model_);
        view_->setParent(this);
        view_->fixStyle(style);
        QSize size = view_->sizeHint();
        resize(size);
        view_->resize(size);
        show();
        if (whole)
            for (auto* form : view_->template findChildren<QScrollArea*>())
                size.setHeight(std::max(size.height(), form->heightForWidth(form->width())));
        view_->resize(size);
        resize(size);
        view_->setFocus();
    }

  private:
    Model model_;
    View* view_;
};

std::vector<Picture> pictures() {
    std::vector<Picture> all;
    const auto settings = [&](const std::string& name,
                              std::function<void(SettingsModel&)> prepare) {
        all.push_back({"settings-" + name, [prepare](const FormStyle& style) {
                           return std::make_unique<Shown<SettingsModel, SettingsView>>(
                               [&](SettingsModel& model) {
                                   fill(model);
                                   prepare(model);
                               },
                               style, true);
                       }});
    };
    const auto pane = [](SettingsPane which) {
        return [which](SettingsModel& model) { model.pane.set(which); };
    };
    settings("general", pane(SettingsPane::general));
    settings("general-hidden", [](SettingsModel& model) {
        model.preferences.change(&OrvelCore::Preferences::showsMenuBarIcon, false);
        model.preferences.change(&OrvelCore::Preferences::soundsOn, true);
        model.preferences.launchAtLogin.set(true);
    });
    settings("lock", [](SettingsModel& model) {
        model.pane.set(SettingsPane::lock);
        model.preferences.change(&OrvelCore::Preferences::lockIntensity, 40);
    });
    settings("lock-attempts", [](SettingsModel& model) {
        model.pane.set(SettingsPane::lock);
        model.preferences.change(&OrvelCore::Preferences::lockStyle, OrvelCore::LockStyle::solid);
        model.preferences.change(&OrvelCore::Preferences::awayMessage,
                                 std::string("At lunch. Back at 1:30, please leave it running"));
        std::vector<OrvelCore::Date> attempts;
        for (int i = 0; i < 11; ++i)
            attempts.push_back(now - OrvelCore::Seconds(5000.0 * (1 + i * i)));
        model.preferences.attempts.set(attempts);
    });
    settings("blur", pane(SettingsPane::blur));
    settings("blur-corner", [](SettingsModel& model) {
        model.pane.set(SettingsPane::blur);
        model.preferences.macOSCorners.set({Corner::topLeft, Corner::bottomRight});
        model.preferences.pick(Corner::bottomRight);
        model.preferences.change(&OrvelCore::Preferences::focusBlurIntensity, 14);
        model.preferences.change(&OrvelCore::TriggerSettings::idleBlurAfter,
                                 std::optional<double>(60));
    });
    settings("private", pane(SettingsPane::privateApps));
    settings("private-empty", [](SettingsModel& model) {
        model.pane.set(SettingsPane::privateApps);
        model.preferences.privateApps.set({});
        model.preferences.addableApps.set(someApps());
        model.preferences.showsAddableApps.set(true);
    });
    settings("shortcuts", [](SettingsModel& model) {
        model.pane.set(SettingsPane::shortcuts);
        auto shortcuts = model.preferences.prefs.get().shortcuts;
        shortcuts.focusBlur = Shortcut{3, "F", Shortcut::Modifiers{15}};
        model.preferences.change(&OrvelCore::Preferences::shortcuts, shortcuts);
        model.preferences.recording.set(Action::quickBlur);
        model.preferences.shortcutNotes.set(
            {{Action::lockMac, "Browsers use this for the address bar."},
             {Action::focusBlur,
              "Add Command, Control or Option, so the shortcut never takes a key from your "
              "typing."}});
        model.preferences.refusedNotes.set({Action::focusBlur});
    });
    settings("about", pane(SettingsPane::about));
    settings("about-checking", [](SettingsModel& model) {
        model.pane.set(SettingsPane::about);
        model.about.updateStatus.set("Checking for updates…");
        model.about.checking.set(true);
    });
    settings("about-ready", [](SettingsModel& model) {
        model.pane.set(SettingsPane::about);
        model.about.updateStatus.set("Version 1.5 is ready to install");
        model.about.updateReady.set(true);
    });

    const auto step = [&](const std::string& name, std::function<void(OnboardingModel&)> prepare) {
        all.push_back({"guide-" + name, [prepare](const FormStyle& style) {
                           return std::make_unique<Shown<OnboardingModel, OnboardingView>>(
                               [&](OnboardingModel& model) {
                                   model.staticPreview = true;
                                   model.lockMac.set(Shortcut::lockMac());
                                   model.lockApp.set(Shortcut::lockApp());
                                   model.apps.set(someApps());
                                   prepare(model);
                               },
                               style, false);
                       }});
    };
    const auto go = [](OnboardingModel& model, OnboardingStep to) {
        auto flow = model.flow.get();
        flow.step = to;
        model.flow.set(flow);
    };
    step("1-welcome", [](OnboardingModel&) {});
    step("2-shortcuts", [go](OnboardingModel& model) { go(model, OnboardingStep::shortcuts); });
    step("2-trying", [go](OnboardingModel& model) {
        go(model, OnboardingStep::shortcuts);
        model.lockShortcutPressed();
        model.lockApp.set(std::nullopt);
    });
    step("2-tried", [go](OnboardingModel& model) {
        go(model, OnboardingStep::shortcuts);
        model.lockShortcutPressed();
        model.lockUncovered();
    });
    step("3-apps", [go](OnboardingModel& model) {
        go(model, OnboardingStep::privateApps);
        model.toggle("signal");
    });
    step("3-none", [go](OnboardingModel& model) {
        go(model, OnboardingStep::privateApps);
        model.apps.set({});
    });
    step("4-finish", [go](OnboardingModel& model) { go(model, OnboardingStep::finish); });
    step("4-hidden", [go](OnboardingModel& model) {
        go(model, OnboardingStep::finish);
        model.iconShown.set(false);
    });
    return all;
}

}  // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    if (argc < 2 || argc > 3) {
        std::fprintf(stderr, "usage: FormPreview folder [word]\n");
        return 2;
    }
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    if (!folder.mkpath(QStringLiteral("."))) {
        std::fprintf(stderr, "FormPreview: can't make %s\n", argv[1]);
        return 1;
    }
    using Theme = SettingsTheme;
    const std::pair<const char*, Theme> themes[] = {
        {"light", {Theme::Scheme::light, Theme::Contrast::standard}},
        {"dark", {Theme::Scheme::dark, Theme::Contrast::standard}},
        {"contrast", {Theme::Scheme::light, Theme::Contrast::increased}}};
    for (const auto& picture : pictures())
        for (const auto& [suffix, theme] : themes) {
            const QString name = QString::fromStdString(picture.name + "-" + suffix);
            if (argc == 3 && !name.contains(QString::fromLocal8Bit(argv[2]))) continue;
            const auto widget = picture.make({.colors = {.theme = theme}, .reduceMotion = true});
            QCoreApplication::processEvents();
            if (!widget->grab().save(folder.filePath(name + QStringLiteral(".png")))) {
                std::fprintf(stderr, "FormPreview: can't write to %s\n", argv[1]);
                return 1;
            }
        }
    return 0;
}
