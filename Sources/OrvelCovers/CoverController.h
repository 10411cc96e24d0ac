#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <vector>

#include "OrvelCore/CoverPlanner.h"
#include "OrvelCovers/CoverSurface.h"

namespace OrvelCovers {

/// Turns plans into live surfaces with the fewest changes that will do, since each needless
/// removal, move or re-ordering shows on the screen as flicker. Main thread only.
class CoverController {
  public:
    using MakeSurface =
        std::function<std::unique_ptr<CoverSurface>(const OrvelCore::CoverRequest&)>;

    explicit CoverController(MakeSurface makeSurface) : makeSurface_(std::move(makeSurface)) {}

    std::set<std::int64_t> coveredWindows() const;
    /// The number of the cover over a window; nothing for one without.
    std::optional<std::int64_t> surfaceNumber(std::int64_t window) const;
    /// The number to stand above for what stands on top of the cover; nothing without a cover.
    std::optional<std::int64_t> frontNumber(std::int64_t window) const;
    std::optional<OrvelCore::CoverRequest> request(std::int64_t window) const;

    /// Brings the surfaces to `plan`. `windows` is the sample that it was made from, front-most
    /// first, with this program's own panels in it.
    void apply(const std::vector<OrvelCore::CoverRequest>& plan,
               const std::vector<OrvelCore::WindowInfo>& windows);
    /// Lays every surface out anew, along displays that have changed.
    void replaceAll();
    void removeAll();

  private:
    struct Live {
        OrvelCore::CoverRequest request;
        std::unique_ptr<CoverSurface> surface;
    };

    MakeSurface makeSurface_;
    std::map<std::int64_t, Live> live_;  // by window
};

}  // namespace OrvelCovers
