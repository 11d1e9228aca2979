#!/usr/bin/Rscript
# Times R's `integrate` on the density of the correlation coefficient and prints one JSON object of
# processor seconds a call, with the keys
#   series/N/RHO/R     P(R <= r), the density by its hypergeometric series, vectorised
#   nested/N/RHO/R     the same, the density by an inner `integrate`
#   quantile/N/RHO/P   `uniroot` on the first
# rho, r and p are in hundredths and thousandths as in our benchmarks.
#
# Run: Rscript correlation.R        (Debian package r-base-core)

here <- dirname(sub("--file=", "", grep("^--file=", commandArgs(FALSE), value = TRUE)))
source(file.path(here, "timing.R"))

# The front factors of Hotelling's density, in logarithms.
log_front <- function(x, rho, n)
  log(n - 2) + (n - 1) / 2 * log1p(-rho^2) + (n - 4) / 2 * log1p(-x^2) +
    (1.5 - n) * log1p(-rho * x)

density_series <- function(x, rho, n) {
  h <- (1 + rho * x) / 2
  term <- sum <- rep(1, length(h))
  k <- 0
  repeat {
    term <- term * (k + 0.5)^2 / ((n - 0.5 + k) * (k + 1)) * h
    sum <- sum + term
    k <- k + 1
    if (max(term / sum) < 1e-12) break
  }
  exp(log_front(x, rho, n) + lgamma(n - 1) - lgamma(n - 0.5) - 0.5 * log(2 * pi)) * sum
}

density_nested <- function(x, rho, n) {
  inner <- function(at)
    integrate(function(u) (1 - u)^(n - 2) / sqrt(u - (rho * at + 1) * u^2 / 2), 0, 1,
              rel.tol = 1e-8, abs.tol = 1e-8)$value
  exp(log_front(x, rho, n) - log(pi * sqrt(2))) * vapply(x, inner, 0)
}

cdf <- function(density, rho, n, r) {
  if (r > 0) 1 - integrate(density, r, 1, rho = rho, n = n, rel.tol = 1e-6, abs.tol = 1e-6)$value
  else integrate(density, -1, r, rho = rho, n = n, rel.tol = 1e-6, abs.tol = 1e-6)$value
}

quantile_of <- function(rho, n, p)
  uniroot(function(r) cdf(density_series, rho, n, r) - p, c(-0.9999, 0.9999), tol = 1e-10)$root

result <- list()
for (n in c(10, 30, 100, 1000)) {
  for (design in list(c(20, 10), c(90, 85))) {
    rho <- design[1] / 100
    r <- design[2] / 100
    key <- sprintf("%d/%d/%d", n, design[1], design[2])
    result[[paste0("series/", key)]] <- seconds(function() cdf(density_series, rho, n, r))
    result[[paste0("nested/", key)]] <- seconds(function() cdf(density_nested, rho, n, r))
  }
  for (design in list(c(20, 975), c(90, 25))) {
    key <- sprintf("quantile/%d/%d/%d", n, design[1], design[2])
    # A root finder that starts from the whole range may meet a density too narrow to be seen.
    time <- try(seconds(function() quantile_of(design[1] / 100, n, design[2] / 1000)), silent = TRUE)
    if (is.numeric(time)) result[[key]] <- time
  }
}

print_seconds("R integrate", result)
