#pragma once

#include <functional>
#include <memory>

namespace OrvelSystem {

/// How the desktop asks programs to look, from the settings of its portal, followed live.
/// Without a portal: light, with motion, transparency and ordinary contrast. Main thread only.
class Appearance {
  public:
    static Appearance& shared();
    ~Appearance();

    bool isDark() const;
    bool increasesContrast() const;
    bool reducesMotion() const;
    /// No desktop asks for it by name; whoever asks for more contrast gets it.
    bool reducesTransparency() const { return increasesContrast(); }

    /// After any of the values changed.
    std::function<void()> onChanged = [] {};

  private:
    Appearance();
    struct Reader;
    std::unique_ptr<Reader> reader_;
};

}  // namespace OrvelSystem
