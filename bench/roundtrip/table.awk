# The strict check against the plain verdict, from the Google Benchmark JSON of
# lumarex-roundtripbench (medians of the repetitions).

FNR == NR && /"name":/ {
    name = $0
    gsub(/.*"name": "|_median",?$|",?$/, "", name)
    median = ($0 ~ /_median"/)
}
/"cpu_time":/ && median {
    value = $2
    sub(/,$/, "", value)
    cpu[name] = value
}

END {
    printf "| 10,000 records (median CPU time of %d repetitions) | Time | Ratio to plain verdict |\n", repetitions
    print "|---|---:|---:|"
    printf "| random records: plain verdict (magic, version, checksum) | %.2f ms | 1.0 |\n",
        cpu["plainVerdict/random"]
    printf "| random records: verdict and strict findings | %.2f ms | %.1f |\n",
        cpu["strictFindings/random"], cpu["strictFindings/random"] / cpu["plainVerdict/random"]
    printf "| random records: predicted resave | %.2f ms | %.1f |\n", cpu["predictResave"],
        cpu["predictResave"] / cpu["plainVerdict/random"]
    printf "| files the editor saved: plain verdict | %.2f ms | 1.0 |\n",
        cpu["plainVerdict/editorFiles"]
    printf "| files the editor saved: verdict and strict findings | %.2f ms | %.1f |\n",
        cpu["strictFindings/editorFiles"],
        cpu["strictFindings/editorFiles"] / cpu["plainVerdict/editorFiles"]
}
