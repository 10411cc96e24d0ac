#pragma once

#include <string>

#import <OpenDirectory/OpenDirectory.h>

/// Account records of the directory.
namespace OrvelAuth::DirectoryRecord {

/// Nil if the node cannot be opened.
ODNode* node(ODNodeType type);
/// Nil if the node has no such account. `attributes` are read together with the record; nil for
/// none.
ODRecord* find(ODNodeType type, const std::string& userName, NSArray* attributes);

}  // namespace OrvelAuth::DirectoryRecord
