# bash completion for autoreport
_autoreport() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  local way="--db-host --db-port --db-user --db-name --single --db-ca --db-cert --db-key --password-file --config --help"
  local ask="--timeout $way"
  local command=${COMP_WORDS[1]} words=""
  COMPREPLY=()

  case $previous in
    --out | --db-ca | --db-cert | --db-key | --config | --password-file | --plugin | --file | --html)
      mapfile -t COMPREPLY < <(compgen -f -- "$current")
      return
      ;;
    --format) words="xlsx xls" ;;
    --language) words="sk en" ;;
    --db-host | --db-port | --db-user | --db-name | --schema | --at | --date | --to | --emails | --time | --debug | --metrics | --run-for | --timeout)
      return
      ;;
  esac
  if [ -z "$words" ]; then
    if [ "$COMP_CWORD" -eq 1 ]; then
      words="serve status history why preview run set check --help --version"
    elif [ "$COMP_CWORD" -eq 3 ] && [[ $command =~ ^(why|preview|run)$ ]]; then
      words="daily monthly"
    elif [ "$COMP_CWORD" -gt 1 ] && [ "$command" = set ] && [[ $current != -* ]]; then
      words="daily monthly" # after any number of schemas
    else
      case $command in
        serve) words="--clear-workbooks --language --plugin --debug --metrics --run-for $way" ;;
        status) words="--schema --problems --all --json $ask" ;;
        history) words="--json --html $ask" ;;
        why) words="--at $ask" ;;
        preview) words="--language --date --out $ask" ;;
        run) words="--language --date --to --mark --yes $ask" ;;
        set) words="--all --enable --disable --emails --time --format --file --dry-run --yes $ask" ;;
        check) words="--json $ask" ;;
      esac
    fi
  fi
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
}
complete -F _autoreport autoreport
