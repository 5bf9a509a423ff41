#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Usage: release_test.sh TREE
#
# Makes one fault at a time in a small repository that could be released, and looks at what scripts/release says. The
# checks, the build and the tests that it calls are stand-ins there: what they find is theirs to test.
tree=$1
folder=$(mktemp -d) || exit 2
trap 'rm -rf "$folder"' EXIT
# No setting of the machine's git counts.
export HOME="$folder" GIT_CONFIG_NOSYSTEM=1 XDG_CONFIG_HOME="$folder" GIT_AUTHOR_NAME=a GIT_AUTHOR_EMAIL=a@example.org
export GIT_COMMITTER_NAME=a GIT_COMMITTER_EMAIL=a@example.org
unset GIT_DIR GIT_WORK_TREE GIT_INDEX_FILE
failures=0
rows=0
fail() { echo "FAILED: $1"; failures=$((failures + 1)); }

model=$folder/model
mkdir -p "$model/scripts/parts" "$model/docs" "$model/python/buttondriver"
cp "$tree/scripts/release" "$model/scripts/"
cp "$tree/python/wheel_builder.py" "$model/python/"
sed 's/^version = .*/version = "2.3.0"/' "$tree/python/pyproject.toml" >"$model/python/pyproject.toml"
sed 's/^  VERSION .*/  VERSION 2.3.0/' "$tree/CMakeLists.txt" >"$model/CMakeLists.txt"
sed 's/^find_package(buttondriver [0-9.]*/find_package(buttondriver 2.3/' "$tree/docs/install.md" >"$model/docs/install.md"
printf '# Changes\n\n## 2.3.0, 2026-02-28\n\n- Something.\n\n## 2.2.0, 2025-01-01\n\n- More.\n' >"$model/CHANGELOG.md"
touch "$model/python/buttondriver/__init__.py"
echo '/build*/' >"$model/.gitignore"
for script in check-arrows check-format check-tidy test parts/drawings parts/generated; do
    printf '#!/bin/sh\necho "%s $*" >>build/called\n' "$script" >"$model/scripts/$script"
done
cat >"$model/scripts/package" <<'SH'
#!/bin/sh
echo "package $*" >>build/called
mkdir -p build/packages
touch build/packages/buttondriver_2.3.0_amd64.deb build/packages/buttondriver-doc_2.3.0_all.deb build/packages/x_1.0_all.deb
SH
chmod +x "$model"/scripts/*
chmod +x "$model"/scripts/parts/*

# new_repository: the model, committed on main.
new_repository() {
    rm -rf "$folder/repository"
    cp -r "$model" "$folder/repository"
    cd "$folder/repository" || exit 2
    mkdir build
    git init -q -b main && git add -A && git commit -q -m "The model" || exit 2
}
release() {
    said=$(scripts/release "$@" 2>&1)
    status=$?
}

# expect SAYS COMMAND [OPTION...]: after COMMAND in a new repository, which is committed, the release of 2.3.0 fails with
# status 1 and a line SAYS, and there is no tag. Without an option it has --check --without-packages.
expect() {
    rows=$((rows + 1))
    new_repository
    line=$1
    command=$2
    shift 2
    sh -c "$command" || exit 2
    [ -n "$keep" ] || git commit -q -a -m "A change" --allow-empty
    [ $# -gt 0 ] || set -- --check --without-packages
    [ "$*" != none ] || set --
    release "$@" 2.3.0
    [ $status -eq 1 ] || fail "after $command: status $status"
    echo "$said" | grep -qxF -e "release: $line" || fail "after $command: no line '$line' in: $said"
    echo "$said" | grep -qxF 'release: 2.3.0 is not ready' || fail "after $command: does not end with a line: $said"
    case $command in *'git tag'*) ;; *) [ -z "$(git tag)" ] || fail "after $command: there is a tag" ;; esac
}
# last_call NAME: nothing is done after what was found last.
last_call() { [ "$(tail -n 1 build/called)" = "$1" ] || fail "goes on after $1: $(tail -n 1 build/called)"; }
keep=
expect 'a release is made on main, and this is other' 'git checkout -q -b other'
expect 'a release is made on main, and this is no branch' 'git checkout -q --detach'
expect 'there is a tag v2.3.0 already' 'git tag v2.3.0'
expect "CMakeLists.txt has version '2.2.9', not 2.3.0" "sed -i 's/VERSION 2.3.0/VERSION 2.2.9/' CMakeLists.txt"
expect "python/pyproject.toml has version '2.3.1', not 2.3.0" "sed -i 's/2.3.0/2.3.1/' python/pyproject.toml"
expect "CHANGELOG.md's first heading has version '2.4.0', not 2.3.0" "sed -i 's/2.3.0/2.4.0/' CHANGELOG.md"
expect "CHANGELOG.md's first heading has no date: ## 2.3.0, not released yet" \
    "sed -i 's/2026-02-28/not released yet/' CHANGELOG.md"
expect 'CHANGELOG.md has changes that are not released, line 3:## 2.3.0, not released yet' \
    "sed -i 's/2026-02-28/not released yet/' CHANGELOG.md"
expect "CHANGELOG.md's first heading has no date: ## 2.3.0, 2026-02-29" "sed -i 's/02-28/02-29/' CHANGELOG.md"
expect "CHANGELOG.md's first heading has no date: ## 2.3.0, some day" "sed -i 's/2026-02-28/some day/' CHANGELOG.md"
expect 'CHANGELOG.md has changes that are not released, line 7:## 2.2.0, not released yet' \
    "sed -i 's/2025-01-01/not released yet/' CHANGELOG.md"
expect 'CHANGELOG.md has changes that are not released, line 1:## Unreleased' "sed -i '1s/.*/## Unreleased/' CHANGELOG.md"
expect 'CHANGELOG.md says nothing of 2.3.0' "sed -i '/^- Something/d' CHANGELOG.md"
expect 'docs/install.md does not ask for buttondriver 2.3' "sed -i 's/(buttondriver 2.3/(buttondriver 2.2/' docs/install.md"
expect 'scripts/check-format finds faults' 'echo "exit 1" >>scripts/check-format'
expect 'the drawings are stale, or cannot be looked at' 'echo "exit 1" >>scripts/parts/drawings' --check
last_call 'parts/drawings --check'
expect 'a generated file is stale, and was made anew: look at it, and commit it' 'echo "exit 1" >>scripts/parts/generated' --check
last_call 'parts/generated '
expect 'the packages cannot be built' 'echo "exit 1" >>scripts/package' --check
last_call 'package '
expect 'the packages fail a test' 'echo "exit 1" >>scripts/test' --check
expect 'the packages fail a test' 'echo "exit 1" >>scripts/test' none
[ ! -e build/release-2.3.0 ] || fail "there are files to publish after a test that failed"
expect 'these packages are not of version 2.3.0: see build/packages' 'sed -i "s/2\.3\.0_/2.2.0_/g" scripts/package' --check
keep=uncommitted
expect 'not everything is committed: see git status' 'echo >>CHANGELOG.md'
expect 'not everything is committed: see git status' 'touch new'

# All faults that cost nothing are told at once.
new_repository
sed -i 's/VERSION 2.3.0/VERSION 1.0.0/' CMakeLists.txt
release --check --without-packages 2.3.0
[ "$(echo "$said" | grep -c '^release: ')" -eq 3 ] || fail "two faults and the end are not three lines: $said"
[ ! -e build/called ] || fail "what takes longer was done before: $(cat build/called)"

# Wrong arguments are told before anything is looked at.
for arguments in '' 2.3 v2.3.0 02.3.0 '2.3.0 2.4.0' '--without-packages 2.3.0' '--force 2.3.0'; do
    rows=$((rows + 1))
    # shellcheck disable=SC2086 # words
    release $arguments
    [ "$status $said" = '2 usage: scripts/release [--check [--without-packages]] MAJOR.MINOR.PATCH' ] ||
        fail "'$arguments': status $status, $said"
done

# said_is STATUS LINE...: what a release says is its calls, and then these lines.
said_is() {
    rows=$((rows + 1))
    [ $status -eq "$1" ] || fail "status $status instead of $1: $said"
    shift
    printf '%s\n' "$@" >"$folder/expected"
    echo "$said" | grep -v '^== ' | diff "$folder/expected" - || fail "see above"
}
new_repository
release --check --without-packages 2.3.0
said_is 0 'release: 2.3.0 is ready, and was not tagged'
[ -z "$(git tag)" ] || fail "a check has made a tag"
printf 'check-arrows \ncheck-format \nparts/drawings --check\n' | diff - build/called || fail "a quick check calls others"

new_repository
mkdir build/release-2.3.0
touch build/release-2.3.0/old.deb # of an earlier try
release 2.3.0
sum_of() { sha256sum "build/release-2.3.0/$1" | cut -c 1-64; }
wheel=buttondriver-2.3.0-py3-none-any.whl
said_is 0 "release: v2.3.0 is $(git rev-parse --short HEAD)" 'to publish, from build/release-2.3.0:' \
    "    $(sum_of buttondriver-doc_2.3.0_all.deb)  ./buttondriver-doc_2.3.0_all.deb" \
    "    $(sum_of buttondriver_2.3.0_amd64.deb)  ./buttondriver_2.3.0_amd64.deb" "    $(sum_of $wheel)  ./$wheel" \
    'then: git push origin main v2.3.0'
[ "$(git cat-file -t v2.3.0)" = tag ] || fail "the tag has no text of its own"
[ "$(git rev-parse 'v2.3.0^{commit}')" = "$(git rev-parse HEAD)" ] || fail "another commit is tagged"
(cd build/release-2.3.0 && sha256sum --quiet -c SHA256SUMS) || fail "the sums are wrong"
printf 'check-arrows \ncheck-format \nparts/drawings --check\nparts/generated \npackage \ntest packages\n' |
    diff - build/called || fail "a release calls others"
[ -z "$(git status --porcelain)" ] || fail "a release leaves files: $(git status --porcelain)"

echo "$rows rows, $failures failures"
[ "$failures" -eq 0 ]
