# What a key is, against a table that is written down apart from the program's own.
add_core_test(tst_keyvocabulary keys)
target_compile_definitions(tst_keyvocabulary PRIVATE KEYS_FILE="${PROJECT_SOURCE_DIR}/tests/data/keys.tsv")
