// What bash and zsh offer inside a box for a command line of gwbox.
#include <gtest/gtest.h>

#include "inside.h"
#include "watch.h"

static std::string joined(const std::string& lines) {
  std::string text = lines;
  for (char& c : text)
    c = c == '\n' ? ' ' : c;
  while (text.ends_with(' '))
    text.pop_back();
  return text;
}

static std::string run_script(const std::string& shell, const std::string& script) {
  write_file("/tmp/completion", script);
  run_result result = run(shell + " /tmp/completion");
  EXPECT_EQ(result.status, 0) << result.output;
  return joined(result.output);
}

// What bash offers at the end of the line. `words` is the line as bash splits it.
static std::string offered(const std::string& line, const std::string& words = "") {
  return run_script("bash", "eval \"$(gwbox completion bash)\"\nCOMP_LINE='" + line +
                                "'\nCOMP_POINT=${#COMP_LINE}\nCOMP_WORDS=(" + words +
                                ")\nCOMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n"
                                "_gwbox gwbox\nprintf '%s\\n' \"${COMPREPLY[@]}\"\n");
}

static std::string offered_by_zsh(const std::string& words) {
  return run_script("zsh",
                    "compdef() { :; }\neval \"$(gwbox completion zsh)\"\n"
                    "compadd() { while [ $1 != -- ]; do shift; done; shift; print -l -- $@ }\n"
                    "compset() { PREFIX=${PREFIX#*=} }\n"
                    "_files() { print files of \"$PREFIX\" }\n"
                    "_normal() { print line $words at $CURRENT }\n"
                    "words=(" +
                        words + ") CURRENT=${#words}\nPREFIX=$words[-1]\n_gwbox\n");
}

TEST(Completion, CommandsAndTheirOptions) {
  EXPECT_EQ(offered("gwbox "),
            "run plan status set fail advance pause resume log wait scenario completion");
  EXPECT_EQ(offered("gwbox --box 12 s"), "status set scenario");
  EXPECT_EQ(offered("gwbox --"), "--help --version --box");
  EXPECT_EQ(offered("gwbox run --s"), "--scenario --speed");
  EXPECT_EQ(offered("gwbox log --"), "--help --follow --json --version --box");
  EXPECT_EQ(offered("gwbox scenario "), "list show check");
  EXPECT_EQ(offered("gwbox completion "), "bash zsh");
  EXPECT_EQ(offered("gwbox pause "), "");
  EXPECT_EQ(offered("gwbox advance "), "");
  EXPECT_EQ(offered("gwbox run --name "), "");
}

TEST(Completion, EveryCommandAndOptionOfTheHelpIsOffered) {
  std::string help =
      run("gwbox --help | sed -n '/^Commands/,/^$/s/^  \\([a-z]*\\) .*/\\1/p'").output;
  EXPECT_EQ(offered("gwbox "), joined(help));
  help = run("gwbox run --help | grep -oE -- '^  (-h, )?--[a-z-]+' | grep -oE -- '--.*'").output;
  EXPECT_EQ(offered("gwbox run -"), joined(help));
}

TEST(Completion, BoardsAndScenarios) {
  EXPECT_EQ(offered("gwbox run --board "), "mt7603 mt7603+mt7612 mt7615");
  EXPECT_EQ(offered("gwbox run --board=mt7603+"), "mt7603+mt7612");
  EXPECT_EQ(offered("gwbox scenario show "), "minimal apartment mesh schema");
  EXPECT_EQ(offered("gwbox run --scenario min"), "minimal");
  write_file("/tmp/minute one.json", "{}");
  EXPECT_EQ(offered("gwbox run --scenario /tmp/min"), "/tmp/minute one.json");
  EXPECT_EQ(offered("gwbox run --scenario=/tmp/min"), "/tmp/minute one.json");
  EXPECT_EQ(offered("gwbox scenario check /tmp/min"), "/tmp/minute one.json");
}

TEST(Completion, WhatCanBeSet) {
  EXPECT_EQ(offered("gwbox set "), "station neighbour nonassoc bss radio companion speed");
  EXPECT_EQ(offered("gwbox set station "), "02:00:5e:00:00:01 02:00:5e:00:00:02");
  ASSERT_EQ(run("gwbox set station 02:00:5e:00:00:77 bss=1").status, 0);
  EXPECT_EQ(offered("gwbox set station 02:00:5e:00:00:7"), "77") << "what follows the colon";
  EXPECT_EQ(offered("gwbox set station 02:00:5e:00:00:77 by"), "by_wps=");
  EXPECT_EQ(offered("gwbox set station 02:00:5e:00:00:77 by_wps="), "true false");
  EXPECT_EQ(offered("gwbox set station 02:00:5e:00:00:77 per_second.rx_b"), "per_second.rx_bytes=");
  EXPECT_EQ(offered("gwbox set station 02:00:5e:00:00:77 go"), "gone");
  EXPECT_EQ(offered("gwbox set neighbour 02:00:5e:10:00:01 radio=ra"), "ra0 ra8");
  EXPECT_EQ(offered("gwbox set bss 1"), "1 10 11 12 13 14 15 16");
  EXPECT_EQ(offered("gwbox set radio "), "ra0 ra8");
  EXPECT_EQ(offered("gwbox set radio ra0 btm=true wps.outcome="), "success failure timeout");
  EXPECT_EQ(offered("gwbox set companion bnd"), "bndstrg_1.marker_after");
  EXPECT_EQ(offered("gwbox set speed "), "");
  EXPECT_EQ(offered("gwbox set nothing "), "");
}

TEST(Completion, WhatCanFailAndHow) {
  EXPECT_EQ(offered("gwbox fail li"), "list");
  EXPECT_EQ(offered("gwbox fail sta"), "stations station_traffic");
  EXPECT_EQ(offered("gwbox fail survey@ra1"), "ra1 ra10 ra11 ra12 ra13 ra14 ra15");
  EXPECT_EQ(offered("gwbox fail survey EAG"), "EAGAIN");
  EXPECT_EQ(offered("gwbox fail survey de"), "delay=");
  EXPECT_EQ(offered("gwbox fail survey EAGAIN "), "");
  EXPECT_EQ(offered("gwbox fail clear "), "");
  EXPECT_EQ(offered("gwbox fail list --j"), "--json");
}

TEST(Completion, TheCommandToRunIsTheShellsOwnMatter) {
  EXPECT_EQ(offered("gwbox run --cold -- iwpri", "gwbox run --cold -- iwpri"), "iwpriv");
  write_file("/tmp/minutes", "");
  EXPECT_EQ(offered("gwbox run -- cat /tmp/minut", "gwbox run -- cat /tmp/minut"), "/tmp/minutes");
  EXPECT_EQ(offered("gwbox status -- iwpri", "gwbox status -- iwpri"), "");
}

TEST(Completion, ZshOffersTheSame) {
  EXPECT_EQ(offered_by_zsh("gwbox --box 12 s"), "status set scenario");
  EXPECT_EQ(offered_by_zsh("gwbox set station ''"), "02:00:5e:00:00:01 02:00:5e:00:00:02");
  EXPECT_EQ(offered_by_zsh("gwbox set radio ra0 wps.outcome=s"), "wps.outcome=success");
  EXPECT_EQ(offered_by_zsh("gwbox fail survey@ra9"), "survey@ra9");
  EXPECT_EQ(offered_by_zsh("gwbox run --board=mt7615"), "--board=mt7615");
  EXPECT_EQ(offered_by_zsh("gwbox run --scenario=/tmp/m"), "files of /tmp/m");
  EXPECT_EQ(offered_by_zsh("gwbox run --cold -- iwpriv ra"), "line iwpriv ra at 2");
}

TEST(Completion, OtherShellsHaveNone) {
  run_result other = run("gwbox completion fish");
  EXPECT_EQ(other.status, 2);
  EXPECT_NE(other.output.find("takes bash or zsh, not 'fish'"), std::string::npos);
}
