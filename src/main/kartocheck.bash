# bash completion for kartocheck. The options, and what each takes, come from the program's own help.

_kartocheck_scenarios() {
  local directory folder
  directory=$(dirname -- "$(type -P -- "$1")") || return
  for folder in "$directory/scenarios" "$directory/../share/kartocheck/scenarios"; do
    [ -d "$folder" ] && find "$folder" -maxdepth 1 -name '*.json' -exec basename -s .json -- {} +
  done
}

_kartocheck() {
  local current=${COMP_WORDS[COMP_CWORD]} option=${COMP_WORDS[COMP_CWORD - 1]} help takes=''
  # An equals sign is a word of its own.
  if [ "$current" = = ]; then
    current=''
  elif [ "$option" = = ]; then
    option=${COMP_WORDS[COMP_CWORD - 2]}
  fi
  COMPREPLY=()
  help=$("$1" --help 2>/dev/null) || return
  if [[ $option =~ ^--[a-z-]+$ ]]; then
    takes=$(sed -n "s/^  $option \([^ ]\+\) .*/\1/p" <<<"$help")
  fi
  case $takes in
    DATEI)
      mapfile -t COMPREPLY < <(compgen -f -- "$current")
      compopt -o filenames 2>/dev/null
      ;;
    ORDNER)
      mapfile -t COMPREPLY < <(compgen -d -- "$current")
      compopt -o filenames 2>/dev/null
      ;;
    PN) mapfile -t COMPREPLY < <(compgen -W '1 2 3 4 8192' -- "$current") ;;
    N=*) mapfile -t COMPREPLY < <(compgen -W '1= 2= 3= 4=' -- "$current") ;;
    '[SZENARIO]')
      mapfile -t COMPREPLY < <(compgen -W "$(_kartocheck_scenarios "$1")" -- "$current")
      mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -f -- "$current")
      compopt -o filenames 2>/dev/null
      ;;
  esac
  # A value in brackets may be left out.
  if [ -z "$takes" ] || [[ $takes == '['* && $current == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$(sed -n 's/^  \(--[a-z-]\+\).*/\1/p' <<<"$help")" -- "$current")
  fi
} &&
  complete -F _kartocheck kartocheck
