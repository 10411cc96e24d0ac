#pragma once

#include <QSocketNotifier>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "OrvelCore/FileDescriptor.h"
#include "OrvelCore/WeakList.h"

namespace OrvelSystem {

/// The connection to the IPC interface of sway. Main thread only. No function blocks for longer
/// than a quarter of a second.
class SwayConnection {
  public:
    enum class Message : std::uint32_t {
        command = 0,
        subscribe = 2,
        tree = 4,
        version = 7,
        config = 9,
        bindingState = 12
    };
    using Event = std::function<void(std::string_view kind, const nlohmann::json& event)>;

    /// Null if the session's compositor is not sway, or does not answer.
    static std::unique_ptr<SwayConnection> open();
    ~SwayConnection();

    /// `nullopt` if sway does not answer in time.
    std::optional<nlohmann::json> ask(Message message, std::string_view payload = {});
    /// Runs commands of sway's configuration. Returns whether all have succeeded.
    bool run(std::string_view commands);
    /// Each event is reported until the subscription ends. `kind` is its name, such as "window".
    OrvelCore::Subscription observe(Event handler) { return observers_.add(std::move(handler)); }

    /// No more events are reported.
    void stopEvents() { notifier_.reset(); }

  private:
    explicit SwayConnection(OrvelCore::FileDescriptor events);
    bool listen();
    void readEvents();

    /// Empty after a request that was not answered, because its answer may still come.
    std::optional<OrvelCore::FileDescriptor> requests_;
    OrvelCore::FileDescriptor events_;
    std::string received_;
    std::unique_ptr<QSocketNotifier> notifier_;
    OrvelCore::WeakList<Event> observers_;
};

}  // namespace OrvelSystem
