#pragma once

namespace OrvelSystem {

/// One running fingerprint prompt. Its owner shows it by holding it in a card's model.
class BiometricContext {
  public:
    virtual ~BiometricContext() = default;
    /// Ends the prompt; whoever waits for it gets `cancelled`. Harmless when it has ended.
    virtual void invalidate() = 0;
};

}  // namespace OrvelSystem
