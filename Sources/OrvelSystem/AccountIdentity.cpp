#include "OrvelSystem/AccountIdentity.h"

namespace OrvelSystem {

std::string AccountIdentity::fullName(std::string_view comment, std::string_view userName) {
    std::string name;
    for (const char c : comment.substr(0, comment.find(','))) {
        // By convention, an ampersand in the comment field stands for the capitalised login name.
        if (c != '&') {
            name += c;
            continue;
        }
        const auto start = name.size();
        name += userName;
        if (start < name.size() && name[start] >= 'a' && name[start] <= 'z') {
            name[start] = static_cast<char>(name[start] - 'a' + 'A');
        }
    }
    return name.find_first_not_of(' ') == std::string::npos ? std::string() : name;
}

}  // namespace OrvelSystem
