"""The tools by which a language model uses applications."""
