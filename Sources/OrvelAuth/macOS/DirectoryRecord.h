#pragma once

#include <string>

#import <OpenDirectory/OpenDirectory.h>

/// Records of accounts in the directory.
namespace OrvelAuth::DirectoryRecord {

/// Nil when the node cannot be opened.
ODNode* node(ODNodeType type);
/// Nil when there is no such account in the node. `attributes` are read with the record; nil for
/// none.
ODRecord* find(ODNodeType type, const std::string& userName, NSArray* attributes);

}  // namespace OrvelAuth::DirectoryRecord
