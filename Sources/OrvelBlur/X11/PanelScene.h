#pragma once

#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "OrvelBlur/OverlayPanel.h"
#include "OrvelBlur/X11/BlurPyramid.h"
#include "OrvelBlur/X11/PanelWindow.h"
#include "OrvelBlur/X11/SceneSources.h"
#include "OrvelCore/WeakList.h"

namespace OrvelBlur {

/// What the layers of a panel show, as set on the panel. Opacities are from 0 to 1.
struct PanelLayers {
    OverlayPanel::Backdrop backdrop = OverlayPanel::ServerBlur{};
    int radius = 0;  ///< Of the blur, in points; 0 for none.
    OrvelCore::Color tint{0, 0, 0, 0};
    double tintOpacity = 0;
    double grainOpacity = 0;
    double contentOpacity = 0;
};

/// What is behind a panel, blurred by the server. A panel over a display starts with a capture of
/// the screen, which is ready at once; as soon as something changes behind the panel, the scene is
/// composed from the windows below. The scene of a panel that is attached to a window is always
/// composed, since the screen also shows what is in front of that window. Main thread only.
class PanelScene {
  public:
    /// The first two must outlive this object. `changed` runs when the scene has been composed anew
    /// because something changed behind the panel; it is not blurred yet.
    PanelScene(const PanelWindow& window, const PanelLayers& layers, std::function<void()> changed)
        : window_(window), layers_(layers), changed_(std::move(changed)) {}

    /// Whether the panel has a blurred backdrop. Otherwise there is no scene, and the functions
    /// below do nothing.
    bool isBlurring() const;
    /// Makes the first scene. Call before the window is mapped.
    void start();
    /// Makes the scene of the wanted frame. Call before the window is moved or resized there.
    /// `before` is its frame until now, in root coordinates, in pixels.
    void move(const PixelRect& before);
    /// Blurs the scene with the present radius, and tints it. Returns where the result has changed,
    /// in pixels of the window.
    std::vector<PixelRect> blur();
    /// Takes up at once what has changed in the order of the windows.
    void catchUp();
    /// The tinted result of the last `blur`; null if there is none. It has the panel's size divided
    /// by `BlurPyramid::sceneScale`.
    const Canvas* blurred() const { return isBlurring() ? blurred_ : nullptr; }
    /// Ends the reports of changes. Call before the window is unmapped.
    void stop() { changes_.reset(); }
    /// Makes and frees the first scene.
    void rehearse();
    /// Frees all pictures, or keeps them for the next panel of a lock. Call after the window was
    /// unmapped: until then the server keeps the windows below up to date, and shows them without
    /// waiting for their programs.
    void clear();

  private:
    PixelSize size() const;
    PixelRect neededArea() const;
    bool fillsScene(const SourceWindow& source) const;
    void handleChange(const SceneSources::Change& change);
    void capture();
    void compose(const std::vector<PixelRect>& drawnAnew = {});
    std::vector<PixelRect> differences(const SceneSources::Sources& now) const;
    std::vector<PixelRect> inScene(const std::vector<PixelRect>& areas) const;
    void drawBackground();
    void drawWindows(const Canvas& canvas);

    const PanelWindow& window_;
    const PanelLayers& layers_;
    std::function<void()> changed_;
    OrvelCore::Subscription changes_;
    Canvas captured_;  // what the screen showed when the panel came in
    Canvas composed_;  // what is behind the panel now; empty until something has changed there
    PixelRect composedFrame_;           // the window's frame then
    SceneSources::Sources windows_;     // the windows that `composed_` shows, bottom first
    std::vector<PixelRect> frames_;     // theirs
    std::vector<PixelRect> unblurred_;  // where the scene has changed since the last `blur`
    /// How the last `blur` was made.
    struct Blurring {
        double radius = 0;  // in pixels
        OrvelCore::Color tint{0, 0, 0, 0};
        bool operator==(const Blurring&) const = default;
    };
    std::optional<Blurring> blurring_;
    BlurPyramid pyramid_;
    const Canvas* blurred_ = nullptr;
};

}  // namespace OrvelBlur
