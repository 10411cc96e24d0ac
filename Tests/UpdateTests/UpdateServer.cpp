#include "UpdateServer.h"

#include "Eventually.h"

namespace {

const DesktopTest::Environment environment{{"PATH", "/usr/bin:/bin"}};

}  // namespace

UpdateServer::UpdateServer() {
    const auto made =
        run({"sh", "-ec",
             "cd \"$0\"\n"
             "new='openssl req -x509 -nodes -days 2'\n"
             "$new -newkey ed25519 -subj /CN=Test -keyout ca.key -out ca.pem\n"
             "$new -newkey ec -pkeyopt ec_paramgen_curve:P-256 -subj /CN=localhost -CA ca.pem "
             "-CAkey ca.key -addext subjectAltName=DNS:localhost "
             "-addext basicConstraints=critical,CA:FALSE -keyout server.key -out server.pem\n"
             "cat server.key server.pem >both.pem\n",
             keys_.path().string()},
            environment);
    if (made.status != 0) throw std::runtime_error("openssl: " + made.output);
    process_ = std::make_unique<DesktopTest::Process>(
        DesktopTest::Arguments{"/usr/bin/python3", KARVO_UPDATE_SERVER, folder().string(),
                               (keys_ / "both.pem").string()},
        environment, keys_ / "log");
    if (!eventually([this] { return process_->output().contains('\n'); }))
        throw std::runtime_error("no server: " + process_->output());
    port_ = process_->output().substr(0, process_->output().find('\n'));
}

URLSessionUpdateTransport::Options UpdateServer::options() const {
    URLSessionUpdateTransport::Options options;
    options.stallTimeout = 1;
    options.authorities = keys_ / "ca.pem";
    return options;
}

std::shared_ptr<UpdateTransport> UpdateServer::transport() const {
    return std::make_shared<URLSessionUpdateTransport>(options());
}
