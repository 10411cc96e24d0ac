#pragma once

#include <functional>
#include <list>
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

    /// After any of the values changed. One owner: the program's own look.
    std::function<void()> onChanged = [] {};
    /// The same for anybody, until the token is dropped.
    [[nodiscard]] std::shared_ptr<void> observe(std::function<void()> changed);

  private:
    Appearance();
    void tellOfChange();

    struct Reader;
    std::unique_ptr<Reader> reader_;
    std::list<std::weak_ptr<std::function<void()>>> observers_;
};

}  // namespace OrvelSystem
