# Read by the shell of ./run.sh shell: the programs in dist/ under their names.
PS1='vantrel$ '
vantrel-ctl() { "$WINE_LOADER" dist/vantrel-ctl.exe "$@"; }
served_desktop() { "$WINE_LOADER" dist/served_desktop.exe "$@" >/dev/null; }
echo "vantrel-ctl and served_desktop are at hand; docs/tutorial.md says what to do with them. exit ends it all."
