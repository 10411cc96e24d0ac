#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>
#include <QStringList>
#include <QVariant>

#include "OrvelModes/StatusItem/MenuPanelPresenter.h"
#include "OrvelModes/StatusItem/StatusMenu.h"
#include "OrvelModes/X11/StatusItemDesktop.h"
#include "OrvelSystem/Qt/QtMainLoop.h"
#include "OrvelUI/MenuPanelModel.h"

#include "Live.h"

/// A desktop's panel, as far as status items know it: the watcher that they announce themselves to,
/// and the hand that clicks them. It has a connection of its own to the bus.
class DesktopPanel {
  public:
    explicit DesktopPanel(bool hasHost = true);
    ~DesktopPanel();
    DesktopPanel(const DesktopPanel&) = delete;
    DesktopPanel& operator=(const DesktopPanel&) = delete;

    void setHost(bool hasHost);
    const QStringList& items() const;
    /// Calls a method of the newest item or of its menu and waits for the answer, our loop running.
    QDBusMessage call(const char* method, const QVariantList& arguments = {});
    QDBusMessage callMenu(const char* method, const QVariantList& arguments = {});
    QVariant property(const char* name);
    /// How often the item has said that it has a new icon.
    int newIcons() const { return newIcons_; }

  private:
    class Watcher;
    QDBusMessage send(const QString& path, const QString& interface, const QString& method,
                      const QVariantList& arguments);

    QDBusConnection bus_;
    std::unique_ptr<Watcher> watcher_;
    int newIcons_ = 0;
    std::shared_ptr<void> icons_;
};

/// A status item with its menu and panel in this process, wired as the program wires them, on a
/// screen of 800 by 600 with a bar of 30 at the top.
class MenuDesktopTest : public LiveTest {
  protected:
    MenuDesktopTest();
    ~MenuDesktopTest() override;

    /// Where the panel's card is on the screen; empty while there is none.
    DesktopTest::Area card();
    bool isOpen() { return presenter.isOpen(); }
    /// Points the mouse at the item and clicks it through the desktop's panel.
    void clickItem(DesktopPanel& panel);
    /// A click on the control of this accessible name.
    void clickControl(const std::string& name);

    static constexpr int itemX = 600;
    static constexpr int itemY = 15;

    OrvelSystem::QtMainLoop loop;
    OrvelUI::MenuPanelModel model;
    OrvelModes::StatusMenuController menu{model};
    OrvelModes::LiveStatusItem item{menu, OrvelModes::x11StatusItemDesktop()};
    OrvelModes::MenuPanelPresenter presenter{model, loop, OrvelModes::MenuPanelSystem::live()};
    std::vector<std::string> chosen;
};
