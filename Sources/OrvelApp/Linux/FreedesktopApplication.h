#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <memory>

namespace OrvelApp {

/// The program on the session bus, as desktops start, reopen and end programs. There is one
/// instance per session: a second start hands over what it was started with.
class FreedesktopApplication {
  public:
    struct Handlers {
        std::function<void()> reopen;
        std::function<void(const QStringList& urls)> open;
        std::function<void()> quit;
    };

    enum class Start {
        first,    ///< This is the one instance, or there is no bus to ask.
        second,   ///< Another one runs, and has been told.
        refused,  ///< Another one runs and did not answer.
    };

    FreedesktopApplication();
    ~FreedesktopApplication();

    /// Claims the program's name. `urls` go to the instance that has it already; without any it
    /// shows itself, unless the session starts this one by itself.
    Start start(const QStringList& urls, bool asLoginItem);
    void setHandlers(Handlers handlers);

  private:
    class Adaptor;
    std::unique_ptr<Adaptor> adaptor_;
};

}  // namespace OrvelApp
