#include "OrvelUI/MenuPanelContent.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include <fmt/format.h>

#include "OrvelCore/Brand.h"
#include "OrvelCore/Match.h"
#include "OrvelUI/AccessibilityText.h"
#include "OrvelUI/MenuPanelText.h"

namespace OrvelUI {

using namespace MenuPanelActions;
using Kind = MenuPanelRow::Kind;
using Role = MenuPanelControl::Role;
using Weight = LabelContent::Weight;
using What = Simple::What;

void perform(MenuPanelModel& model, const MenuPanelAction& action) {
    const auto leave = [&model](const auto& act) {
        model.onDone();
        act();
    };
    const auto simple = [&](Simple chosen) {
        switch (chosen.what) {
            case What::lockMac:
                return leave(model.onLockMac);
            case What::lockFront:
                return leave(model.onLockFront);
            case What::quickBlur:
                return leave(model.onToggleQuickBlur);
            case What::focusBlur:
                return model.onToggleFocusBlur();
            case What::privateApps:
                return model.onTogglePrivateApps();
            case What::showChoices:
                model.showsPrivateChoices.set(!model.showsPrivateChoices.get());
                return;
            case What::installUpdate:
                return leave(model.onInstallUpdate);
            case What::openSettings:
                return leave(model.onOpenSettings);
            case What::quit:
                return leave(model.onQuit);
        }
    };
    OrvelCore::match(
        action, simple, [&](const PrivateApp& app) { model.onTogglePrivateApp(app.bundleID); },
        [&](const Unlock& unlock) { leave([&] { model.onUnlock(unlock.pid); }); });
}

double MenuPanelRow::height() const {
    switch (kind) {
        case Kind::header:
            return 46;
        case Kind::prominent:
            return 52;
        case Kind::item:
            return subtitle.text.empty() ? 40 : 50;
        case Kind::choice:
            return 32;
        case Kind::section:
            return 26;
        case Kind::separator:
            return 13;
        case Kind::footer:
            break;
    }
    return 50;
}

double MenuPanelContent::bodyHeight() const {
    return std::accumulate(rows.begin(), rows.end(), 0.0,
                           [](double sum, const MenuPanelRow& row) { return sum + row.height(); });
}

double MenuPanelContent::height(double room) const {
    const double whole = header.height() + bodyHeight() + footer.height();
    return std::min({whole, maximumHeight, room});
}

namespace {

/// Builds the rows of one model, in the inks of one contrast setting.
class Writer {
  public:
    Writer(const MenuPanelModel& model, bool increasedContrast)
        : model_(model),
          quiet_{Palette::lockInk, Palette::lockSecondaryOpacity(increasedContrast)} {}

    MenuPanelRow header() const {
        // Verbatim, because it may contain app names and none of its own words needs rewording.
        LabelContent title{
            .text = model_.status(), .size = 13, .weight = Weight::semibold, .verbatim = true};
        keepCount(title);
        return {.id = "header",
                .kind = Kind::header,
                .title = std::move(title),
                .buttons = {{.control = settings(),
                             .symbol = {.name = "gearshape", .size = 16, .ink = quiet_}}}};
    }

    std::vector<MenuPanelRow> rows() const {
        std::vector<MenuPanelRow> rows{lockMac()};
        if (const auto& name = model_.frontAppName.get()) rows.push_back(lockFront(*name));
        rows.push_back(separator("modes"));
        const auto& offered = model_.capabilities;
        if (offered.screenBlur)
            rows.push_back(toggle("Blur Screen", "Hide everything, no password", "eye.slash",
                                  What::quickBlur, model_.quickBlurOn.get(),
                                  AccessibilityText::quickBlur, model_.quickBlurShortcut.get()));
        if (offered.focusBlur)
            rows.push_back(toggle("Focus Blur", {}, "macwindow", What::focusBlur,
                                  model_.focusBlurOn.get(), AccessibilityText::focusBlur,
                                  model_.focusBlurShortcut.get()));
        if (offered.appCovers) rows.push_back(privateApps());
        if (model_.showsPrivateChoices.get()) {
            for (const auto& app : model_.privateChoices.get()) rows.push_back(choice(app));
        }
        if (!model_.lockedApps.get().empty()) {
            rows.push_back(separator("locked"));
            rows.push_back({.id = "lockedApps",
                            .kind = Kind::section,
                            .title = {.text = "Locked apps",
                                      .size = 11,
                                      .weight = Weight::semibold,
                                      .ink = quiet_}});
        }
        for (const auto& app : model_.lockedApps.get()) rows.push_back(locked(app));
        if (const auto& version = model_.updateVersion.get()) {
            rows.push_back(separator("update"));
            rows.push_back(update(*version));
        }
        if (model_.restartWaits.get()) {
            rows.push_back(separator("restart"));
            rows.push_back({.id = "restart",
                            .symbol = SymbolContent{.name = "hourglass", .size = 14, .ink = quiet_},
                            .field = {Palette::lockInk, 0.1},
                            .title = {.text = MenuPanelText::restartLine(), .size = 12}});
        }
        return rows;
    }

    MenuPanelRow footer() const {
        const bool canQuit = model_.canQuit();
        const std::string quit = canQuit ? "Quit" : "Unlock apps to quit";
        MenuPanelControl control = button(What::quit, quit, AccessibilityText::quit());
        control.enabled = canQuit;
        return {.id = "footer",
                .kind = Kind::footer,
                .buttons = {text(settings()), text(std::move(control))}};
    }

  private:
    static MenuPanelControl button(What what, std::string name, std::string hint) {
        return {.action = Simple{what}, .name = std::move(name), .hint = std::move(hint)};
    }
    static MenuPanelControl settings() {
        return button(What::openSettings, "Settings", AccessibilityText::openSettings);
    }
    MenuPanelButton text(MenuPanelControl control) const {
        MenuPanelButton button{.label = {.text = control.name,
                                         .size = 12,
                                         .weight = Weight::medium,
                                         .ink = control.enabled ? Palette::Ink{} : quiet_}};
        button.control = std::move(control);
        return button;
    }
    static MenuPanelRow separator(std::string before) {
        return {.id = "separator." + std::move(before), .kind = Kind::separator};
    }
    /// Long names may be cut, but not the count of the names that the text leaves out.
    void keepCount(LabelContent& label) const {
        const auto tail = MenuPanelText::listTail(model_.chosenNames());
        if (tail.empty() || !label.text.ends_with(tail)) return;
        label.text.resize(label.text.size() - tail.size());
        label.tail = tail;
    }
    static std::optional<Keycaps> caps(const MenuPanelModel::Shortcut& shortcut,
                                       Keycaps::Tone tone) {
        if (!shortcut) return std::nullopt;
        return Keycaps{.caps = shortcut->keycaps(), .tone = tone};
    }

    MenuPanelRow lockMac() const {
        const Palette::Ink ink{Palette::inkLight};
        return {.id = "lockMac",
                .kind = Kind::prominent,
                .control = button(What::lockMac, "Lock Mac", AccessibilityText::lockMac),
                .symbol = SymbolContent{.name = "lock.fill", .size = 15, .ink = ink},
                .title = {.text = "Lock Mac", .size = 14, .weight = Weight::semibold, .ink = ink},
                .keycaps = caps(model_.lockMacShortcut.get(), Keycaps::Tone::onAccent)};
    }

    MenuPanelRow lockFront(const std::string& name) const {
        auto control = button(What::lockFront, "Lock " + name, AccessibilityText::lockFrontApp);
        control.verbatim = true;
        return {
            .id = "lockFront",
            .control = control,
            .symbol = SymbolContent{.name = "lock.square", .size = 16},
            .field = {Palette::lockInk, 0.1},
            .title = {.text = control.name, .size = 13, .weight = Weight::medium, .verbatim = true},
            .keycaps = caps(model_.lockAppShortcut.get(), Keycaps::Tone::onDark)};
    }

    MenuPanelRow toggle(const std::string& title, const std::string& subtitle,
                        const std::string& symbol, What what, bool on, const std::string& hint,
                        const MenuPanelModel::Shortcut& shortcut) const {
        auto control = button(what, title, hint);
        control.role = Role::toggle;
        control.on = on;
        return {.id = title,
                .control = control,
                .symbol = SymbolContent{.name = symbol, .size = 15, .ink = {Palette::accentDark}},
                .field = {Palette::accentDark, on ? 0.26 : 0.13},
                .title = {.text = title, .size = 13, .weight = Weight::medium},
                .subtitle = {.text = subtitle, .size = 11, .ink = quiet_},
                .keycaps = caps(shortcut, Keycaps::Tone::onDark)};
    }

    MenuPanelRow privateApps() const {
        auto row =
            toggle("Private Apps", model_.privateSummary(), "square.dashed", What::privateApps,
                   model_.privateAppsOn.get(), AccessibilityText::privateApps, {});
        row.subtitle.verbatim = true;
        keepCount(row.subtitle);
        const bool open = model_.showsPrivateChoices.get();
        row.buttons = {
            {.control = button(What::showChoices, open ? "Hide apps" : "Choose apps", {}),
             .symbol = {.name = "chevron.right", .size = 12, .ink = quiet_},
             .turn = open ? 90.0 : 0.0}};
        return row;
    }

    MenuPanelRow choice(const MenuPanelModel::PrivateChoice& app) const {
        const auto ink = app.chosen ? Palette::Ink{Palette::accentDark} : quiet_;
        return {
            .id = "choice." + app.id,
            .kind = Kind::choice,
            .control = MenuPanelControl{.action = PrivateApp{app.id},
                                        .role = Role::choice,
                                        .on = app.chosen,
                                        .name = app.name,
                                        .hint = AccessibilityText::privateApp,
                                        .verbatim = true},
            .icon = AvatarContent{.picture = app.icon,
                                  .initials = {},
                                  .symbol = "app.fill",
                                  .size = 18,
                                  .round = false},
            .title = {.text = app.name, .size = 12, .verbatim = true},
            .mark = SymbolContent{
                .name = app.chosen ? "checkmark.circle.fill" : "circle", .size = 16, .ink = ink}};
    }

    MenuPanelRow locked(const MenuPanelModel::LockedApp& app) const {
        // The name tells several unlock buttons apart for a screen reader.
        MenuPanelButton unlock = text({.action = Unlock{app.id},
                                       .name = "Unlock " + app.name,
                                       .hint = AccessibilityText::unlockApp,
                                       .verbatim = true});
        unlock.label.text = "Unlock";
        return {.id = fmt::format("locked.{}", app.id),
                .symbol = SymbolContent{.name = "lock.fill", .size = 12, .ink = quiet_},
                .field = {Palette::lockInk, 0.1},
                .title = {.text = app.name, .size = 13, .weight = Weight::medium, .verbatim = true},
                .subtitle = {.text = MenuPanelText::lockedAgo(app.since, model_.now.get()),
                             .size = 11,
                             .ink = quiet_},
                .buttons = {std::move(unlock)}};
    }

    MenuPanelRow update(const std::string& version) const {
        return {.id = "update",
                .symbol = SymbolContent{.name = "arrow.down", .size = 14, .ink = quiet_},
                .field = {Palette::lockInk, 0.1},
                .title = {.text = MenuPanelText::updateLine(version), .size = 12},
                .buttons = {text(
                    button(What::installUpdate, "Install", AccessibilityText::installUpdate()))}};
    }

    const MenuPanelModel& model_;
    Palette::Ink quiet_;
};

}  // namespace

MenuPanelContent MenuPanelContent::of(const MenuPanelModel& model, bool increasedContrast) {
    const Writer writer(model, increasedContrast);
    return {.header = writer.header(),
            .rows = writer.rows(),
            .footer = writer.footer(),
            .accessibleName = std::string(OrvelCore::Brand::name)};
}

}  // namespace OrvelUI
