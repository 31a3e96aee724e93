# shellcheck shell=bash disable=SC2154
# What the checks of the ready-made profiles are asked about.

# lay_out_profiles FOLDER: two profiles with their sources and their help. The caller tells in `scripts` where the scripts are.
lay_out_profiles() {
  local tree=$1 profile='<MapProfile Name="%s" Description="%s" WindowTitle="" WindowClass="" AutoActivate=False Enabled=False>\r\n'
  local mapping='<Mapping Description="%s" BeginPort=%d EndPort=%d Protocal=%d ForwardIPAddress=-1>\r\n</Mapping>\r\n'
  rm -rf "$tree"
  mkdir -p "$tree/profiles" "$tree/help"
  cat >"$tree/profiles/sources.csv" <<'END'
name,category,ports,protocol,page,date,read,uses,warning,description
Chess,games,4000-4003; 80,UDP; TCP+UDP,https://chess.example/ports,2026-11-21,the manual,Game; Web,,"A game, and a long one."
Ledger,databases,5432,TCP,https://ledger.example/,2026-11-21,the page,Database,database,Keeps accounts.
END
  printf 'warning,text\ndatabase,Think first: a VPN is safer.\n' >"$tree/profiles/warnings.csv"
  # shellcheck disable=SC2059
  {
    printf "$profile" Chess 'A game, and a long one.'
    printf "$mapping" Game 4000 4003 1 Web 80 80 2
    printf '</MapProfile>\r\n'
  } >"$tree/profiles/Chess.prf"
  # shellcheck disable=SC2059
  {
    printf "$profile" Ledger 'Keeps accounts. Think first: a VPN is safer.'
    printf "$mapping" Database 5432 5432 0
    printf '</MapProfile>\r\n'
  } >"$tree/profiles/Ledger.prf"
  cp "$tree/profiles/Chess.prf" "$tree/profiles/All games.prf"
  cp "$tree/profiles/Ledger.prf" "$tree/profiles/All databases.prf"
  PYTHONPATH=$scripts python3 -B - "$tree" <<'END'
import pathlib, sys
import profile_library as library

page = pathlib.Path(sys.argv[1]) / "help" / library.HELP_PAGE
page.write_text(library.BEGIN + library.END)
library.update_help(sys.argv[1])
END
}
