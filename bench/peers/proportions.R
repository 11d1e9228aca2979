#!/usr/bin/Rscript
# Times a vectorised R search for the exact required N of one proportion, on the designs of
# procedures/OneProportion_bench.cpp, and prints one JSON object of seconds a call with the keys
# `exact_size/<design>` and of its answers.
#
# The search asks blocks of 1000 sizes at a time for their power, each block in one vectorised call of
# pbinom a side, until a block holds a size that reaches the goal. It answers the least size, where ours
# may end a tooth above it, and needs no estimate.
#
# Run: Rscript proportions.R        (Debian package r-base-core)

here <- dirname(sub("--file=", "", grep("^--file=", commandArgs(FALSE), value = TRUE)))
source(file.path(here, "timing.R"))

goal <- 0.9
block <- 1000

# pi, pi0, alpha, form: 0 two-tailed, 1 upper, 2 lower
designs <- list(
  c(0.7, 0.5, 0.05, 0),
  c(0.6, 0.5, 0.05, 0),
  c(0.55, 0.5, 0.05, 1),
  c(0.05, 0.02, 0.01, 1),
  c(0.02, 0.05, 0.05, 2),
  c(0.52, 0.5, 0.05, 0),
  c(0.505, 0.5, 0.05, 0))

exact_power <- function(n, pi, pi0, alpha, form) {
  tail <- if (form == 0) alpha / 2 else alpha
  mean <- n * pi0
  half <- qnorm(1 - tail) * sqrt(mean * (1 - pi0))
  upper <- if (form != 2) pbinom(ceiling(mean + half) - 1, n, pi, lower.tail = FALSE) else 0
  lower <- if (form != 1) pbinom(floor(mean - half), n, pi) else 0
  upper + lower
}

required_size <- function(pi, pi0, alpha, form) {
  first <- 1
  repeat {
    n <- first:(first + block - 1)
    reached <- exact_power(n, pi, pi0, alpha, form) >= goal
    if (any(reached)) return(n[which.max(reached)])
    first <- first + block
  }
}

times <- numeric()
sizes <- numeric()
for (i in seq_along(designs)) {
  key <- sprintf("exact_size/%d", i - 1)
  d <- designs[[i]]
  call <- function() required_size(d[1], d[2], d[3], d[4])
  times[[key]] <- seconds_of_one(call)
  sizes[[key]] <- call()
}

entries <- function(values, format) {
  paste(sprintf(paste0("\"%s\": ", format), names(values), values), collapse = ", ")
}
cat(sprintf("{\"peer\": \"R\", \"seconds\": {%s}, \"answers\": {%s}}\n",
            entries(times, "%.9g"), entries(sizes, "%.0f")))
