// How subcommands plug into `orvex`: each file under cli/ adds its subcommand with a Register function and
// gives back what to run when it was chosen. Exit codes are the command line's contract.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace CLI {
class App;
}

namespace OrvexCli {

inline constexpr int kExitOk = 0;
inline constexpr int kExitInvalid = 1;  // the input was read but is invalid, or the request was refused
inline constexpr int kExitUsage = 2;    // usage or I/O error

class TCommandRegistry {
  public:
    void Add(CLI::App* sub, std::function<int()> run) { fCommands.emplace_back(sub, std::move(run)); }
    int Run(const CLI::App& app) const;  // runs the chosen subcommand

  private:
    std::vector<std::pair<CLI::App*, std::function<int()>>> fCommands;
};

void RegisterCommands(CLI::App& app, TCommandRegistry& commands);

// A drawing read with entries skipped: one "orvex: warning: ..." line each on stderr.
void PrintReadWarnings(const std::vector<std::string>& warnings);

// One per subcommand, in its own file.
void RegisterReference(CLI::App& app, TCommandRegistry& commands);
void RegisterAnimate(CLI::App& app, TCommandRegistry& commands);
void RegisterParse(CLI::App& app, TCommandRegistry& commands);
void RegisterConvert(CLI::App& app, TCommandRegistry& commands);
void RegisterInfo(CLI::App& app, TCommandRegistry& commands);
void RegisterServe(CLI::App& app, TCommandRegistry& commands);
void RegisterChat(CLI::App& app, TCommandRegistry& commands);
void RegisterEdit(CLI::App& app, TCommandRegistry& commands);

}  // namespace OrvexCli
