# Keys: what a source makes of events, and of a real keyboard on a real server.
set(KEYS_FILE "${PROJECT_SOURCE_DIR}/tests/data/keys.tsv")
add_morlen_test(tst_keysource SOURCES keys/tst_keysource.cpp LINKS keys Qt5::Widgets Qt5::Test)
target_compile_definitions(tst_keysource PRIVATE KEYS_FILE="${KEYS_FILE}")
add_morlen_test(tst_realkeys SOURCES keys/tst_realkeys.cpp LINKS keys Qt5::Widgets Qt5::Test XSERVER)
target_compile_definitions(tst_realkeys PRIVATE KEYS_FILE="${KEYS_FILE}")
