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

/// The part of a desktop's panel that status items use: the watcher that they register with, and
/// the calls that a click makes. It has its own connection to the bus.
class DesktopPanel {
  public:
    explicit DesktopPanel(bool hasHost = true);
    ~DesktopPanel();
    DesktopPanel(const DesktopPanel&) = delete;
    DesktopPanel& operator=(const DesktopPanel&) = delete;

    void setHost(bool hasHost);
    const QStringList& items() const;
    /// Calls a method of the newest item or of its menu and waits for the reply while the event
    /// loop runs.
    QDBusMessage call(const char* method, const QVariantList& arguments = {});
    QDBusMessage callMenu(const char* method, const QVariantList& arguments = {});
    QVariant property(const char* name);

  private:
    class Watcher;
    QDBusMessage send(const QString& path, const QString& interface, const QString& method,
                      const QVariantList& arguments);

    QDBusConnection bus_;
    std::unique_ptr<Watcher> watcher_;
};

/// A status item with its menu and panel in this process, connected as in the program. The screen
/// has 800 by 600 pixels, with a bar of 30 pixels at the top.
class MenuDesktopTest : public LiveTest {
  protected:
    MenuDesktopTest();
    ~MenuDesktopTest() override;

    /// The area of the panel's card on the screen; empty if it is not open.
    Area card();
    bool isOpen() { return presenter.isOpen(); }
    /// Moves the pointer to the item and clicks it through the desktop's panel.
    void clickItem(DesktopPanel& panel);
    /// Clicks the control with this accessible name.
    void clickControl(const std::string& name);

    static constexpr int itemX = 600;
    static constexpr int itemY = 15;

    QtMainLoop loop;
    MenuPanelModel model;
    StatusMenuController menu{model};
    LiveStatusItem item{menu, x11StatusItemDesktop()};
    MenuPanelPresenter presenter{model, loop, MenuPanelSystem::live()};
    std::vector<std::string> chosen;
};
