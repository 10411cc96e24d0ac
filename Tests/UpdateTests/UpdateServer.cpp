#include "UpdateServer.h"

#include "Eventually.h"

namespace {

const DesktopTest::Environment environment{{"PATH", "/usr/bin:/bin"}};

void openssl(DesktopTest::Arguments arguments) {
    arguments.insert(arguments.begin(), "openssl");
    if (const auto finished = DesktopTest::run(arguments, environment); finished.status != 0)
        throw std::runtime_error("openssl: " + finished.output);
}

}  // namespace

UpdateServer::UpdateServer() {
    const auto path = [this](const char* name) { return (keys_ / name).string(); };
    openssl({"req", "-x509", "-newkey", "ed25519", "-nodes", "-days", "2", "-subj", "/CN=Test",
             "-keyout", path("ca.key"), "-out", path("ca.pem")});
    openssl({"req",
             "-x509",
             "-newkey",
             "ec",
             "-pkeyopt",
             "ec_paramgen_curve:P-256",
             "-nodes",
             "-days",
             "2",
             "-subj",
             "/CN=localhost",
             "-addext",
             "subjectAltName=DNS:localhost",
             "-addext",
             "basicConstraints=critical,CA:FALSE",
             "-CA",
             path("ca.pem"),
             "-CAkey",
             path("ca.key"),
             "-keyout",
             path("server.key"),
             "-out",
             path("server.pem")});
    writeText(keys_ / "both.pem", textOf(keys_ / "server.key") + textOf(keys_ / "server.pem"));
    process_ = std::make_unique<DesktopTest::Process>(
        DesktopTest::Arguments{"/usr/bin/python3", KARVO_UPDATE_SERVER, folder().string(),
                               path("both.pem")},
        environment, keys_ / "log");
    if (!DesktopTest::eventually([this] { return process_->output().contains('\n'); }))
        throw std::runtime_error("no server: " + process_->output());
    port_ = process_->output().substr(0, process_->output().find('\n'));
}

OrvelUpdates::URLSessionUpdateTransport::Options UpdateServer::options() const {
    OrvelUpdates::URLSessionUpdateTransport::Options options;
    options.stallTimeout = 1;
    options.authorities = keys_ / "ca.pem";
    return options;
}

std::shared_ptr<OrvelUpdates::UpdateTransport> UpdateServer::transport() const {
    return std::make_shared<OrvelUpdates::URLSessionUpdateTransport>(options());
}
