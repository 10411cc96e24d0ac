#include "OrvelSystem/Password.h"

#include <cstring>
#include <new>
#include <utility>

#include <sodium.h>

#include "OrvelCore/Text.h"

namespace OrvelSystem {

namespace {

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

}  // namespace

Password::Password(std::string_view utf8) {
    if (utf8.size() > capacity) {
        std::size_t end = capacity;
        while (end > 0 && isContinuation(utf8[end])) --end;
        utf8 = utf8.substr(0, end);
    }
    append(utf8);
}

Password::Password(Password&& other) noexcept
    : bytes_(std::exchange(other.bytes_, nullptr)), size_(std::exchange(other.size_, 0)) {}

Password& Password::operator=(Password&& other) noexcept {
    if (this != &other) {
        clear();
        bytes_ = std::exchange(other.bytes_, nullptr);
        size_ = std::exchange(other.size_, 0);
    }
    return *this;
}

Password::~Password() {
    clear();
}

bool Password::append(std::string_view utf8) {
    if (utf8.empty()) return true;
    if (utf8.size() > capacity - size_) return false;
    if (bytes_ == nullptr) {
        if (sodium_init() < 0) throw std::bad_alloc();
        bytes_ = static_cast<char*>(sodium_malloc(capacity));
        if (bytes_ == nullptr) throw std::bad_alloc();
    }
    std::memcpy(bytes_ + size_, utf8.data(), utf8.size());
    size_ += utf8.size();
    return true;
}

void Password::removeLastCharacter() {
    if (empty()) return;
    const std::size_t end = OrvelCore::Text::lastCharacterStart(view());
    sodium_memzero(bytes_ + end, size_ - end);
    size_ = end;
    if (empty()) clear();
}

void Password::clear() noexcept {
    sodium_free(bytes_);  // wipes the memory; accepts null
    bytes_ = nullptr;
    size_ = 0;
}

std::size_t Password::characterCount() const {
    return OrvelCore::Text::characterCount(view());
}

bool Password::operator==(const Password& other) const {
    return size_ == other.size_ && (size_ == 0 || sodium_memcmp(bytes_, other.bytes_, size_) == 0);
}

}  // namespace OrvelSystem
