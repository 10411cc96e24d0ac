#pragma once

#include <QString>
#include <QVariant>

#include "Services.h"
#include "Support/TemporaryFolder.h"

/// The bus of this process, used as both the system bus and the session bus. There is only one
/// because Qt connects once to each and keeps the connection. It is created on first use, together
/// with the `QCoreApplication` that Qt needs.
class Bus {
  public:
    static Bus& shared();

    /// The environment with which a program uses this bus.
    const DesktopTest::Environment& environment() const { return environment_; }
    std::filesystem::path log(const std::string& name) const { return folder_ / name; }
    PrivateBus& connection() { return *bus_; }

    /// Replaces a method of a mock object. `code` is Python code for python3-dbusmock.
    void answer(const QString& service, const QString& path, const QString& interface,
                const QString& method, const QString& in, const QString& out, const QString& code);

  private:
    Bus();
    void askMock(const QString& service, const QString& path, const QString& method,
                 const QVariantList& arguments);

    TemporaryFolder folder_;
    DesktopTest::Environment environment_;
    std::unique_ptr<PrivateBus> bus_;
};

/// Like `eventually` and `stays`, but they run the Qt loop while they wait.
bool pumpedUntil(const std::function<bool()>& holds);
bool pumpedWhile(const std::function<bool()>& holds);
