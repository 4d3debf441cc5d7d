#include <cstdio>

#include "base/report.h"
#include "commands/complete.h"
#include "commands/fail.h"
#include "commands/line.h"
#include "commands/log.h"
#include "commands/plan_command.h"
#include "commands/run.h"
#include "commands/wait.h"
#include "control/ask.h"
#include "control/status.h"
#include "scenario/document.h"

static std::vector<std::string> with(const char* first, std::vector<std::string> words) {
  words.insert(words.begin(), first);
  return words;
}

static std::vector<std::string> fail_words(const args& a) {
  std::vector<std::string> words = {a.what};
  for (const std::string& word : {a.how, a.count}) {
    if (!word.empty()) words.push_back(word);
  }
  return words;
}

static int act(const args& a) {
  switch (a.command) {
    case kArgsRun:
      return run_box(a);
    case kArgsFail:
      return fail_run(a.box, fail_words(a), a.json);
    case kArgsSet:
      return control_tell(a.box, with("set", a.words));
    case kArgsAdvance:
      return control_tell(a.box, {"advance", a.seconds});
    case kArgsPause:
      return control_tell(a.box, {"pause"});
    case kArgsResume:
      return control_tell(a.box, {"resume"});
    case kArgsStatus:
      return status_print(a.box, a.json);
    case kArgsLog:
      return log_print(a.box, a.follow, a.json);
    case kArgsWait:
      return wait_run(a.box, a.words, a.timeout);
    case kArgsPlan:
      return plan_run(a);
    case kArgsRehearse:
      return plan_rehearse(a);
    case kArgsScenarioList:
      return scenario_print_list();
    case kArgsScenarioShow:
      return scenario_print(a.which);
    case kArgsScenarioCheck:
      return scenario_print_check(a.which);
    case kArgsCompletion:
      return complete_print_script(a.shell);
    case kArgsComplete:
      return complete_print(args_offers(a.payload));
    case kArgsDone:
      return a.status;
  }
  return 0;
}

static int flush_output(int status) {
  bool lost = ferror(stdout) != 0;
  if (fflush(stdout) != 0 || lost) {
    report_errno(nullptr, "write the output");
    return status == 0 ? kExitFailed : status;
  }
  return status;
}

int main(int argc, char** argv) {
  args a = args_read(argc, argv);
  int status = act(a);
  return a.command == kArgsRun || a.command == kArgsPlan ? status : flush_output(status);
}
