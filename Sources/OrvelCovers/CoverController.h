#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <vector>

#include "OrvelCore/CoverPlanner.h"
#include "OrvelCore/WindowInfo.h"
#include "OrvelCovers/CoverSurface.h"

namespace OrvelCovers {

/// Turns plans into live surfaces with as few changes as possible, because each needless removal,
/// move or restacking is visible as flicker. Main thread only.
class CoverController {
  public:
    using MakeSurface =
        std::function<std::unique_ptr<CoverSurface>(const OrvelCore::CoverRequest&)>;

    explicit CoverController(MakeSurface makeSurface) : makeSurface_(std::move(makeSurface)) {}

    std::set<OrvelCore::WindowID> coveredWindows() const;
    /// The window number of the cover over `window`; `nullopt` if it has no cover.
    std::optional<OrvelCore::WindowID> surfaceNumber(OrvelCore::WindowID window) const;
    /// The window number above which to stack anything that belongs on top of the cover; `nullopt`
    /// without a cover.
    std::optional<OrvelCore::WindowID> frontNumber(OrvelCore::WindowID window) const;
    /// What the cover over `window` was last made to match; `nullopt` without a cover.
    std::optional<OrvelCore::CoverRequest> request(OrvelCore::WindowID window) const;

    /// Makes the surfaces match `plan`. `windows` is the sample from which the plan was made,
    /// front-most first, including this program's own panels.
    void apply(const std::vector<OrvelCore::CoverRequest>& plan,
               const std::vector<OrvelCore::WindowInfo>& windows);
    /// Places every surface again after the displays have changed.
    void replaceAll();
    void removeAll();

  private:
    struct Live {
        OrvelCore::CoverRequest request;
        std::unique_ptr<CoverSurface> surface;
        /// The window that was directly in front of the covered one at the last order.
        std::optional<OrvelCore::WindowID> triedFor;
        /// Whether it was raised above the next cover behind since a cover was last ordered.
        bool isRaised = false;
    };

    static bool order(Live& live, const std::vector<OrvelCore::WindowInfo>& windows);
    void stackLikeWindows(const std::vector<OrvelCore::CoverRequest>& plan,
                          const std::vector<OrvelCore::WindowInfo>& windows);

    MakeSurface makeSurface_;
    std::map<OrvelCore::WindowID, Live> live_;
};

}  // namespace OrvelCovers
