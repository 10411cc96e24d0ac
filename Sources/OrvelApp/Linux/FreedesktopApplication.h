#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <memory>

namespace OrvelApp {

/// The program on the session bus, through which desktops start, reopen and quit programs. There is
/// one instance per session: a second start passes its arguments to the first.
class FreedesktopApplication {
  public:
    struct Handlers {
        std::function<void()> reopen;
        std::function<void(const QStringList& urls)> open;
        std::function<void()> quit;
    };

    enum class Start {
        first,    ///< This is the only instance, or there is no bus.
        second,   ///< Another instance runs and has received the arguments.
        refused,  ///< Another instance runs and did not answer.
    };

    FreedesktopApplication();
    ~FreedesktopApplication();

    /// Claims the program's bus name. If another instance has it, that instance opens `urls`; if
    /// there are none, it shows itself, unless this start is the session's (`asLoginItem`).
    Start start(const QStringList& urls, bool asLoginItem);
    void setHandlers(Handlers handlers);

  private:
    class Adaptor;
    std::unique_ptr<Adaptor> adaptor_;
};

}  // namespace OrvelApp
