#include "system/files.h"

#include <cstring>
#include <utility>

namespace tarnwick {

using Kind = FileQuestion::Kind;

std::optional<std::string> Files::readSmallFile(const std::string& path, std::size_t maxBytes) {
  return ask({Kind::content, path, maxBytes});
}

std::optional<std::string> Files::readFileHead(const std::string& path, std::size_t bytes) {
  return ask({Kind::head, path, bytes});
}

std::optional<std::string> Files::readFileTail(const std::string& path, std::size_t bytes) {
  return ask({Kind::tail, path, bytes});
}

bool Files::pathExists(const std::string& path) { return ask({Kind::exists, path}).has_value(); }

bool Files::isDirectory(const std::string& path) { return ask({Kind::directory, path}).has_value(); }

bool Files::isRegularFile(const std::string& path) { return ask({Kind::regular, path}).has_value(); }

bool Files::isExecutableFile(const std::string& path) { return ask({Kind::program, path}).has_value(); }

bool Files::isOwn(const std::string& path) { return ask({Kind::own, path}).has_value(); }

bool Files::isOpenSocket(const std::string& path) { return ask({Kind::socket, path}).has_value(); }

bool Files::replaceFile(const std::string& path, std::string content) {
  return ask({.kind = Kind::replace, .path = path, .content = std::move(content)}).has_value();
}

bool Files::removeFile(const std::string& path) { return ask({Kind::remove, path}).has_value(); }

bool Files::makeFolder(const std::string& path) { return ask({Kind::makeFolder, path}).has_value(); }

// Names come one after another, each with a NUL behind it.
std::vector<std::string> Files::folderEntries(const std::string& path) {
  const std::string all = ask({Kind::names, path}).value_or("");
  std::vector<std::string> names;
  for (std::size_t start = 0, end = 0; (end = all.find('\0', start)) != std::string::npos; start = end + 1) {
    names.push_back(all.substr(start, end - start));
  }
  return names;
}

std::optional<std::string> Files::realPath(const std::string& path) { return ask({Kind::real, path}); }

std::optional<VolumeFacts> Files::volume(const std::string& path) {
  const FileAnswer answer = ask({Kind::volume, path});
  VolumeFacts facts;
  if (!answer || answer->size() != sizeof facts) return std::nullopt;
  std::memcpy(&facts, answer->data(), sizeof facts);
  return facts;
}

}  // namespace tarnwick
