#pragma once

#include <QString>
#include <QVariant>

#include "Services.h"
#include "Support/Prelude.h"
#include "Support/TemporaryFolder.h"

/// One bus for the whole process, as the system's and as the session's: Qt connects once to each
/// and keeps the connection. Made on first use, with the `QCoreApplication` that Qt needs.
class Bus {
  public:
    static Bus& shared();

    /// What a program must be started with to use this bus.
    const DesktopTest::Environment& environment() const { return environment_; }
    std::filesystem::path log(const std::string& name) const { return folder_ / name; }
    DesktopTest::PrivateBus& connection() { return *bus_; }

    /// Replaces a method of a mocked object. `code` is Python, as python3-dbusmock takes it.
    void answer(const QString& service, const QString& path, const QString& interface,
                const QString& method, const QString& in, const QString& out, const QString& code);

  private:
    Bus();
    void askMock(const QString& service, const QString& path, const QString& method,
                 const QVariantList& arguments);

    TemporaryFolder folder_;
    DesktopTest::Environment environment_;
    std::unique_ptr<DesktopTest::PrivateBus> bus_;
};

/// As `DesktopTest::eventually` and `stays`, with the Qt loop running meanwhile.
bool pumpedUntil(const std::function<bool()>& holds);
bool pumpedWhile(const std::function<bool()>& holds);
