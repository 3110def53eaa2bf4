#include "mirelctl/CommandLine.h"

namespace mirel {

QString helpText()
{
    return QStringLiteral(R"(Usage: mirelctl [OPTION]... COMMAND

Works with Mirel's library of X bookmarks from a terminal or a script.

The library:
  status             how the library stands and whether X works
  sync [--full]      bring the library up to date with X; --full goes on to the
                     oldest bookmark instead of stopping where nothing is new
  history [RUN | --limit N]
                     print the syncs, newest first (20), or what happened in one
  list [OPTION]...   print bookmarks, one a line
      --filter all|inbox|read|favorites|archive   of one mailbox (all)
      --sort newest|oldest|author                 in this order (newest)
      --limit N                                   at most N bookmarks (50)
      --offset N                                  leave out the first N (0)
  show BOOKMARK [--presentation]
                     print one bookmark; --presentation prints what its reader
                     shows of it as JSON
  open BOOKMARK      read one bookmark: its article, thread, links and highlights
  thread BOOKMARK    fetch the thread around it from X
  metrics BOOKMARK   fetch its present counters from X
  delete BOOKMARK [--keep-on-x]
                     delete it here and, if the preferences say so, on X
  authors [TEXT]     print the authors, those with the most bookmarks first

Searching:
  search EXPRESSION [OPTION]...
                     print what matches, with the options of list and
      --ids                                       only the X ids, of all matches
      --why                                       where each condition matched
  count EXPRESSION [--filter MAILBOX]
                     print how many match

Labels:
  label list [TEXT]
  label create NAME [--color HEX]
  label rename LABEL NAME [--color HEX]
  label merge LABEL... --into LABEL
  label delete LABEL...
  label add LABEL BOOKMARK...
  label remove LABEL BOOKMARK...

Folders:
  folder list [TEXT]
  folder create NAME [--description TEXT] [--parent FOLDER]
  folder update FOLDER [--name NAME] [--description TEXT | --no-description]
                [--parent FOLDER | --no-parent]
                     what is not named stays as it is
  folder delete FOLDER...
  folder assign FOLDER BOOKMARK...
  folder unassign BOOKMARK...

Rules:
  rule list [TEXT]
  rule create NAME --query EXPRESSION (--label LABEL | --folder FOLDER)
              [--disabled]
  rule preview RULE  print what it would file
  rule run [RULE]    without a name, all that are enabled
  rule enable RULE...
  rule disable RULE...
  rule delete RULE...

Highlights:
  highlight add BOOKMARK TEXT [--context TEXT] [--start N [--end N]]
                [--color HEX]
  highlight list [BOOKMARK]
  highlight delete ID...

Preferences:
  preferences get [KEY]
  preferences set KEY VALUE [KEY VALUE]...

The connection:
  connect [OPTION]...
                     connect an X account: print the page that asks the user,
                     and wait for the address to which X then returns
      --client-id ID         of the developer app (X_CLIENT_ID)
      --client-secret-stdin  its secret is the first line of standard input
                             (X_CLIENT_SECRET)
      --redirect-uri URI     the address registered with X (mirel://oauth/x)
  disconnect         remove all secrets from the keyring
  purge --yes        delete the library, the secrets and the caches

A BOOKMARK is an X post id or a post's address. A LABEL, FOLDER or RULE is its
name, in capital or small letters, or "#" and its id. TEXT after list or authors
keeps what holds it in its name. A RUN is the id of a sync. An EXPRESSION that
begins with a dash stands behind "--". HEX is a color such as #3E6BF5.

Options:
  --data-dir DIR     use the library in DIR
  --json             print one JSON document
  --demo             use the simulated account of mirel-simulator, whose address
                     MIREL_X_API_URL names, and no keyring; needs --data-dir
  --help             print this text
  --version          print the version

The exit status is 0, or 1 when the command could not be done.
)");
}

} // namespace mirel
