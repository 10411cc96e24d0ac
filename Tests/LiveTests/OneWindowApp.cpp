#include "OneWindowApp.h"

#include "Desktop/SampleWindow.h"

int OneWindowApp::run(const std::string& windowClass) {
    sigset_t told;
    sigemptyset(&told);
    sigaddset(&told, SIGUSR1);
    sigprocmask(SIG_BLOCK, &told, nullptr);
    std::optional<SampleWindow> window;
    for (int number = 0;; sigwait(&told, &number)) {
        if (window)
            window.reset();
        else
            window.emplace(std::getenv("DISPLAY"), Area{50, 50, 200, 100}, 0,
                           SampleWindow::Kind::normal, windowClass);
    }
}

OneWindowApp::OneWindowApp(const std::string& windowClass)
    : process_(std::make_unique<Process>(
          Arguments{std::filesystem::read_symlink("/proc/self/exe").string(), argument,
                    windowClass},
          Environment{{"DISPLAY", std::getenv("DISPLAY")}, {"PATH", std::getenv("PATH")}})) {}

void OneWindowApp::openOrClose() const {
    process_->signal(SIGUSR1);
}
