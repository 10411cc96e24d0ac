#pragma once

#include "OrvelUpdates/URLSessionUpdateTransport.h"

#include "Process.h"
#include "Support/Prelude.h"
#include "Support/TemporaryFolder.h"

/// A real HTTPS server that is "localhost" by its certificate. Also found as 127.0.0.1, where that
/// is not valid. What paths mean stands in server.py.
class UpdateServer {
  public:
    UpdateServer();

    /// Where its files are.
    const std::filesystem::path& folder() const { return folder_.path(); }
    std::string url(const std::string& path) const {
        return "https://localhost:" + port_ + "/" + path;
    }
    /// Requests so far, one a line: path, user agent, cookie.
    std::string requests() const { return textOf(folder_ / "requests"); }
    void forgetRequests() const { std::filesystem::remove(folder_ / "requests"); }

    /// One that knows this server's authority and loses its patience after a second.
    std::shared_ptr<OrvelUpdates::UpdateTransport> transport() const;
    OrvelUpdates::URLSessionUpdateTransport::Options options() const;

  private:
    TemporaryFolder folder_;
    TemporaryFolder keys_;
    std::unique_ptr<DesktopTest::Process> process_;
    std::string port_;
};
