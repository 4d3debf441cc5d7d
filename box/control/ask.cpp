#include "control/ask.h"

#include "base/report.h"
#include "control/connection.h"
#include "control/reach.h"

int control_ask_patiently(const std::string& box, const std::vector<std::string>& words,
                          int seconds, std::string& answer) {
  std::string root, message;
  for (const std::string& word : words)
    message += (message.empty() ? "" : std::string(1, kControlBreak)) + word;
  if (message.size() >= kControlMessageMax) {
    report("the command is too long for a box");
    return kExitUsage;
  }
  if (!reach_root(box, root) || !control_exchange(root, message, seconds, answer))
    return kExitFailed;
  std::string good = std::string("ok") + kControlBreak;
  if (answer == "ok" || answer.starts_with(good)) {
    answer.erase(0, good.size());
    return 0;
  }
  report("%s", answer.c_str());
  return kExitUsage;
}

int control_ask(const std::string& box, const std::vector<std::string>& words,
                std::string& answer) {
  return control_ask_patiently(box, words, 0, answer);
}

int control_tell(const std::string& box, const std::vector<std::string>& words) {
  std::string answer;
  return control_ask(box, words, answer);
}
