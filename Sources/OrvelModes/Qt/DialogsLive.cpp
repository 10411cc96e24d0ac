#include <QTimer>
#include <memory>
#include <utility>

#include "OrvelModes/Windows/Dialogs.h"
#include "OrvelModes/X11/LiveAppWindow.h"
#include "OrvelSystem/Workspace.h"
#include "OrvelUI/Qt/AlertView.h"
#include "OrvelUI/Qt/AppChooserView.h"

namespace OrvelModes::Dialogs {

namespace {

/// A dialog's window and its answer. It exists until the window is closed in any way.
template <class Answer>
struct Dialog : std::enable_shared_from_this<Dialog<Answer>> {
    Answer answer;
    std::function<void(Answer)> answered;
    std::unique_ptr<LiveAppWindow> window;

    void give(Answer given) {
        answer = std::move(given);
        window->close();
    }

    /// `makeView` gets the function with which its view answers.
    template <class MakeView>
    static void present(const std::string& title, Answer whenClosed,
                        std::function<void(Answer)> answered, MakeView makeView) {
        auto dialog = std::make_shared<Dialog>();
        dialog->answer = std::move(whenClosed);
        dialog->answered = std::move(answered);
        dialog->window = std::make_unique<LiveAppWindow>(
            OrvelUI::shownText(title), false, [weak = std::weak_ptr<Dialog>(dialog), makeView] {
                return makeView([weak](Answer given) {
                    if (const auto open = weak.lock()) open->give(std::move(given));
                });
            });
        dialog->window->widget().setWindowModality(Qt::ApplicationModal);
        // The window's closure keeps the dialog alive until it has answered.
        dialog->window->onWillClose = [dialog] {
            QTimer::singleShot(0, qApp, [dialog] {
                const auto tell = std::exchange(dialog->answered, nullptr);
                if (tell) tell(std::move(dialog->answer));
                dialog->window->onWillClose = [] {};
            });
        };
        dialog->window->center();
        dialog->window->makeKeyAndOrderFront();
    }
};

}  // namespace

void alert(const OrvelUI::Alert& alert, std::function<void(std::size_t)> chosen) {
    Dialog<std::size_t>::present(alert.message, alert.buttons.size() - 1, std::move(chosen),
                                 [alert](std::function<void(std::size_t)> answer) {
                                     return std::make_unique<OrvelUI::AlertView>(alert,
                                                                                 std::move(answer));
                                 });
}

void chooseApplications(std::function<void(const std::vector<std::string>&)> chosen) {
    using IDs = std::vector<std::string>;
    Dialog<IDs>::present(
        OrvelUI::AppChooserModel::title, {}, std::move(chosen),
        [](std::function<void(IDs)> answer) {
            auto& workspace = OrvelSystem::Workspace::shared();
            auto model =
                std::make_unique<OrvelUI::AppChooserModel>(workspace.installedApplications());
            model->icon = [&workspace](const std::string& id) { return workspace.icon(id); };
            return std::make_unique<OrvelUI::AppChooserView>(
                std::move(model), [answer = std::move(answer)](const IDs& ids) { answer(ids); });
        });
}

}  // namespace OrvelModes::Dialogs
