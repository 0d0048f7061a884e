#include "app/demo/demo_check.h"

#include <map>
#include <utility>

#include "app/demo/demo.h"
#include "diagnosis/findings.h"
#include "diagnosis/surroundings.h"

namespace tarnwick {
namespace {

class DemoSurroundings final : public NeutralSurroundings {
 public:
  DemoSurroundings(const Demo& demo, const DemoReader& reader)
      : NeutralSurroundings(reader.self),
        repositories_(demo.repositories.begin(), demo.repositories.end()),
        reader_(reader) {}

  std::string mediumDate(Timestamp moment) override { return reader_.mediumDate(moment); }
  std::optional<Git> git(const std::string& dir) override {
    const auto known = repositories_.find(dir);
    return known == repositories_.end() ? std::nullopt : std::optional(known->second);
  }

 private:
  const std::map<std::string, Git> repositories_;
  const DemoReader& reader_;
};

}  // namespace

std::optional<Check> checkDemo(const std::optional<std::string>& scenario, const DemoReader& reader,
                               std::size_t biggest) {
  std::optional<Demo> demo = demoSnapshot(reader.now, scenario, reader.self);
  if (!demo) return std::nullopt;
  DemoSurroundings surroundings(*demo, reader);
  BenchMarks unarmed([] { return 0.0; });
  std::vector<Finding> found = findings(demo->snapshot, {}, surroundings, unarmed);
  BiggestUsers users;
  if (biggest > 0) users = biggestUsers(demo->snapshot, biggest, surroundings);
  return Check{.snapshot = std::move(demo->snapshot), .found = std::move(found), .users = std::move(users)};
}

}  // namespace tarnwick
