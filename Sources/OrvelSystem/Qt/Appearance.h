#pragma once

#include <functional>
#include <memory>

#include "OrvelCore/WeakList.h"

namespace OrvelSystem {

/// The appearance that the desktop requests from programs, read from its portal and kept up to
/// date. Without a portal: light, with animations, transparency and normal contrast. Main thread
/// only.
class Appearance {
  public:
    static Appearance& shared();
    ~Appearance();

    bool isDark() const;
    bool increasesContrast() const;
    bool reducesMotion() const;
    /// No desktop has this setting, so it follows the one for more contrast.
    bool reducesTransparency() const { return increasesContrast(); }

    /// Called after any of the values has changed. It has one owner: the code that sets the
    /// program's own colours.
    std::function<void()> onChanged = [] {};
    /// Calls `changed` after any of the values has changed, until the token is destroyed.
    [[nodiscard]] OrvelCore::Subscription observe(std::function<void()> changed);

  private:
    Appearance();
    void tellOfChange();

    struct Reader;
    std::unique_ptr<Reader> reader_;
    OrvelCore::WeakList<std::function<void()>> observers_;
};

}  // namespace OrvelSystem
