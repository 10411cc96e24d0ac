#pragma once

#include "OrvelApp/AppDelegate.h"
#include "OrvelBlurTests/StubOverlayPanel.h"
#include "OrvelCore/Shortcut.h"

#include "Support/LockStubs.h"

inline constexpr std::string_view thisBoot = "boot-1";
inline const std::vector<Rect> oneDisplay{{0, 0, 800, 600}};

class StubHotkeys final : public HotkeyPlatform {
  public:
    std::function<void(std::uint32_t)> pressed;
    std::map<std::uint32_t, std::uint32_t> numbersByKey;  // modifiers and key code
    bool refuses = false;

    void installEventHandler(std::function<void(std::uint32_t)> handler) override {
        pressed = std::move(handler);
    }
    std::optional<HotkeyRef> registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                            std::uint32_t number) override {
        if (refuses) return {};
        numbersByKey[modifiers + keyCode] = number;
        return number;
    }
    void unregisterHotKey(HotkeyRef ref) override {
        std::erase_if(numbersByKey, [ref](const auto& entry) { return entry.second == ref; });
    }
    void press(const Shortcut& shortcut) {
        pressed(
            numbersByKey.at(HotkeyCenter::carbonModifiers(shortcut.modifiers) + shortcut.keyCode));
    }
};

class StubAwake final : public AwakeAssertion {
  public:
    bool isTaken() const override { return true; }
};

class StubCover final : public CoverSurface {
  public:
    StubCover(CallLog& log, std::int64_t pid) : log_(log), pid_(pid) {
        log_.push_back(fmt::format("cover {}", pid));
    }
    ~StubCover() override { log_.push_back(fmt::format("uncover {}", pid_)); }
    std::int64_t windowNumber() const override { return 1000 + pid_; }
    void place(const Rect&) override {}
    void order(std::int64_t) override {}
    void show(bool) override {}
    void remove() override {}

  private:
    CallLog& log_;
    std::int64_t pid_;
};

class StubPanel final : public MenuPanelSurface {
  public:
    void renewView() override {}
    Size fittingSize(double) override { return {320, 400}; }
    void setFrame(const Rect&) override {}
    void orderFront(bool) override {}
    void orderOut(bool) override {}
};

struct StatusItemRecord {
    MenuBarIconState state = MenuBarIconState::rest;
    std::optional<bool> shown = true;
    int clicks = 0;
    StatusItem* item = nullptr;
};

class StubStatusItem final : public StatusItem {
  public:
    explicit StubStatusItem(StatusItemRecord& record) : record_(record) { record_.item = this; }
    void setVisible(bool) override {}
    void setState(MenuBarIconState state) override { record_.state = state; }
    std::optional<bool> isShown() const override { return record_.shown; }
    void performClick() override { ++record_.clicks; }

  private:
    StatusItemRecord& record_;
};

class StubModeSurface final : public ModeSurface {
  public:
    StubModeSurface(CallLog& log, std::string name, int& orders)
        : log_(log), name_(std::move(name)), orders_(orders) {}
    std::int64_t windowNumber() const override { return 2000; }
    void setContent(std::shared_ptr<PanelContent>) override {}
    void place(const Rect&) override {}
    void show(double) override { log_.push_back(name_ + " shown"); }
    void hide(double) override { log_.push_back(name_ + " hidden"); }
    void takeKeyboard() override {}
    void order(std::int64_t) override { ++orders_; }
    void orderFront() override { ++orders_; }
    void leaveOpen(const std::vector<Rect>&) override {}

  private:
    CallLog& log_;
    std::string name_;
    int& orders_;
};

class StubCornerPanel final : public CornerPanel {
  public:
    explicit StubCornerPanel(std::vector<StubCornerPanel*>& all) : all_(all) {
        all_.push_back(this);
    }
    ~StubCornerPanel() override { std::erase(all_, this); }
    void place(const Rect& placed) override { rect = placed; }
    Rect rect;

  private:
    std::vector<StubCornerPanel*>& all_;
};

class StubToastPanel final : public ToastPanel {
  public:
    explicit StubToastPanel(std::vector<std::string>& shown) : shown_(shown) {}
    void show(const NoticePillContent& notice, const Rect&) override {
        shown_.push_back(notice.accessibleName);
    }
    void setAlpha(double) override {}
    void orderOut() override {}

  private:
    std::vector<std::string>& shown_;
};

struct StubWindow final : AppWindow {
    StubWindow(CallLog& heard, std::string title) : log(heard), name(std::move(title)) {}
    void center() override {}
    void makeKeyAndOrderFront() override {
        log.push_back(name + " shown");
        visible = true;
    }
    void orderFrontRegardless() override {}
    void setLevel(Level) override {}
    bool isVisible() const override { return visible; }
    void close() override {
        visible = false;
        onWillClose();
    }

    CallLog& log;
    std::string name;
    bool visible = false;
};
