#pragma once

#include "OrvelUpdates/URLSessionUpdateTransport.h"

#include "Process.h"
#include "Support/TemporaryFolder.h"

/// A real HTTPS server with a certificate for "localhost". It also answers at 127.0.0.1, for which
/// the certificate is not valid. server.py describes the meaning of the paths.
class UpdateServer {
  public:
    UpdateServer();

    /// The folder with the served files.
    const std::filesystem::path& folder() const { return folder_.path(); }
    std::string url(const std::string& path) const {
        return "https://localhost:" + port_ + "/" + path;
    }
    /// All requests so far, one per line: path, user agent, cookie.
    std::string requests() const { return textOf(folder_ / "requests"); }
    void forgetRequests() const { std::filesystem::remove(folder_ / "requests"); }

    /// A transport that trusts this server's certificate authority and times out after one second.
    std::shared_ptr<UpdateTransport> transport() const;
    URLSessionUpdateTransport::Options options() const;

  private:
    TemporaryFolder folder_;
    TemporaryFolder keys_;
    std::unique_ptr<DesktopTest::Process> process_;
    std::string port_;
};
