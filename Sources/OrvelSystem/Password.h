#pragma once

#include <cstddef>
#include <string_view>

namespace OrvelSystem {

/// The only type that stores a password. Its memory is excluded from swap and core dumps as far as
/// the system allows, and is wiped when it is cleared, moved from or destroyed. Copies must be
/// explicit. A password must never be logged or become part of a message.
class Password {
  public:
    /// In bytes. No account password can be longer: PAM accepts at most 511.
    static constexpr std::size_t capacity = 1024;

    Password() noexcept = default;
    /// Longer text is truncated to `capacity` without splitting a code point.
    explicit Password(std::string_view utf8);
    Password(Password&& other) noexcept;
    Password& operator=(Password&& other) noexcept;
    ~Password();
    Password clone() const { return Password(view()); }

    /// Returns false and appends nothing if the text does not fit.
    bool append(std::string_view utf8);
    /// Removes the last user-perceived character; does nothing if empty.
    void removeLastCharacter();
    void clear() noexcept;

    bool empty() const { return size_ == 0; }
    /// The number of user-perceived characters.
    std::size_t characterCount() const;
    /// UTF-8, valid until the next change. Only for code that verifies the password.
    std::string_view view() const { return {bytes_, size_}; }
    bool operator==(const Password& other) const;

  private:
    char* bytes_ = nullptr;  // allocated by `sodium_malloc`; null while empty
    std::size_t size_ = 0;
};

}  // namespace OrvelSystem
