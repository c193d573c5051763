# bash completion for autoreport
_autoreport() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  local way="--db-host --db-port --db-user --db-name --single --db-ca --db-cert --db-key --password-file --config --help"
  local command=${COMP_WORDS[1]} words=""
  COMPREPLY=()

  case $previous in
    --out | --db-ca | --db-cert | --db-key | --config | --password-file | --plugin)
      mapfile -t COMPREPLY < <(compgen -f -- "$current")
      return
      ;;
    --format) words="xlsx xls" ;;
    --language) words="sk en" ;;
    --db-host | --db-port | --db-user | --db-name | --schema | --at | --date | --to | --emails | --time | --debug | --metrics | --run-for)
      return
      ;;
  esac
  if [ -z "$words" ]; then
    if [ "$COMP_CWORD" -eq 1 ]; then
      words="serve status why preview run set check --help --version"
    elif [ "$COMP_CWORD" -eq 3 ] && [[ $command =~ ^(why|preview|run|set)$ ]]; then
      words="daily monthly"
    else
      case $command in
        serve) words="--language --plugin --debug --metrics --run-for $way" ;;
        status) words="--schema --json $way" ;;
        why) words="--at $way" ;;
        preview) words="--language --date --out $way" ;;
        run) words="--language --date --to --mark --yes $way" ;;
        set) words="--enable --disable --emails --time --format $way" ;;
        check) words="--json $way" ;;
      esac
    fi
  fi
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
}
complete -F _autoreport autoreport
