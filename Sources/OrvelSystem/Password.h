#pragma once

#include <cstddef>
#include <string_view>

namespace OrvelSystem {

/// The one place a password lives. Its memory is kept out of swap and core dumps as far as the
/// system allows, and is wiped when it is cleared, moved from or dropped. It is never copied by
/// accident, never logged and never part of a message.
class Password {
  public:
    /// Bytes. No account password can be longer: PAM takes at most 511.
    static constexpr std::size_t capacity = 1024;

    Password() noexcept = default;
    /// Text beyond `capacity` is cut at a whole character.
    explicit Password(std::string_view utf8);
    Password(Password&& other) noexcept;
    Password& operator=(Password&& other) noexcept;
    ~Password();
    Password clone() const { return Password(view()); }

    /// False, and nothing is taken, when the text would not fit.
    bool append(std::string_view utf8);
    /// Removes the last user-perceived character; nothing when empty.
    void removeLastCharacter();
    void clear() noexcept;

    bool empty() const { return size_ == 0; }
    /// User-perceived characters.
    std::size_t characterCount() const;
    /// UTF-8, valid until the next change. For whoever checks it, and nobody else.
    std::string_view view() const { return {bytes_, size_}; }
    bool operator==(const Password& other) const;

  private:
    char* bytes_ = nullptr;  // from sodium_malloc; nothing while empty
    std::size_t size_ = 0;
};

}  // namespace OrvelSystem
