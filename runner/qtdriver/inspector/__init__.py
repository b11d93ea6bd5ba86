"""`qtdriver inspect`: a page in the browser with the picture and the widgets of an application."""
