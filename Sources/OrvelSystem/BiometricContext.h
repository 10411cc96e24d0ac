#pragma once

namespace OrvelSystem {

/// A running fingerprint prompt. To display it, its owner stores it in a card's model.
class BiometricContext {
  public:
    virtual ~BiometricContext() = default;
    /// Ends the prompt; the code that awaits its result receives `cancelled`. Does nothing if the
    /// prompt has already ended.
    virtual void invalidate() = 0;
};

}  // namespace OrvelSystem
